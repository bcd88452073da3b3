#pragma once

#include <string_view>

#include "SorvaneCore/Import/ImportError.h"

namespace sorvane {

/// The file is no Numbers document with a table, or cannot be converted here.
class NumbersImportError : public ImportError {
public:
    enum class Kind { cannotParse, converterUnavailable, emptyDocument };

    static NumbersImportError cannotParse(std::string_view why);
    static NumbersImportError converterUnavailable();
    static NumbersImportError emptyDocument();
    Kind kind() const { return kind_; }

private:
    NumbersImportError(Kind kind, const std::string& sentence)
        : ImportError(sentence), kind_(kind) {}

    Kind kind_;
};

}  // namespace sorvane
