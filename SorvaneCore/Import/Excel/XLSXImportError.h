#pragma once

#include <cstdint>
#include <string_view>

#include "SorvaneCore/Import/ImportError.h"

namespace sorvane {

/// The file is no workbook with a table in it.
class XLSXImportError : public ImportError {
public:
    enum class Kind {
        unzipFailed,
        noDataRows,
        xmlParseFailed,
        missingWorkbook,
        missingWorksheet,
        noReadableWorksheet,
        noHeaderRow,
    };

    static XLSXImportError unzipFailed(std::string_view why);
    static XLSXImportError noDataRows(std::int64_t columnCount);
    static XLSXImportError xmlParseFailed(std::string_view why);
    static XLSXImportError missingWorkbook();
    static XLSXImportError missingWorksheet();
    static XLSXImportError noReadableWorksheet();
    static XLSXImportError noHeaderRow();
    Kind kind() const { return kind_; }

private:
    XLSXImportError(Kind kind, const std::string& sentence) : ImportError(sentence), kind_(kind) {}

    Kind kind_;
};

}  // namespace sorvane
