#pragma once

#include <string_view>

#include "SorvaneCore/Import/ImportError.h"

namespace sorvane {

/// The bytes are no archive that can be read.
class ZipError : public ImportError {
public:
    enum class Kind { corruptArchive, unsupported, notAZipFile };

    static ZipError corruptArchive(std::string_view what);
    static ZipError unsupported(std::string_view what);
    static ZipError notAZipFile();
    Kind kind() const { return kind_; }

private:
    ZipError(Kind kind, const std::string& sentence) : ImportError(sentence), kind_(kind) {}

    Kind kind_;
};

}  // namespace sorvane
