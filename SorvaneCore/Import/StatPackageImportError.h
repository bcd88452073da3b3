#pragma once

#include <cstdint>
#include <string_view>

#include "SorvaneCore/Import/ImportError.h"

namespace sorvane {

/// The file of a statistics or survey program does not give a dataset.
class StatPackageImportError : public ImportError {
public:
    enum class Kind {
        svmmHasNoData,
        noDataRows,
        unreadableSPSS,
        unreadableStata,
        unreadableSvmm,
        unreadableSvmmField,
    };

    /// `why` is the whole sentence.
    static StatPackageImportError svmmHasNoData(std::string_view why);
    static StatPackageImportError noDataRows(std::int64_t columnCount);
    static StatPackageImportError unreadableSPSS();
    static StatPackageImportError unreadableStata();
    static StatPackageImportError unreadableSvmm();
    static StatPackageImportError unreadableSvmmField();
    Kind kind() const { return kind_; }

private:
    StatPackageImportError(Kind kind, const std::string& sentence)
        : ImportError(sentence), kind_(kind) {}

    Kind kind_;
};

}  // namespace sorvane
