#include "SorvaneCore/Import/Excel/XLSXImportError.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

XLSXImportError XLSXImportError::unzipFailed(std::string_view why) {
    return {Kind::unzipFailed,
            "The Excel workbook could not be opened as an .xlsx file. " + std::string(why)};
}

XLSXImportError XLSXImportError::noDataRows(std::int64_t columnCount) {
    return {Kind::noDataRows, "The Excel worksheet has " + NumberText::integer(columnCount) +
                                  " column headers but no data rows."};
}

XLSXImportError XLSXImportError::xmlParseFailed(std::string_view why) {
    return {Kind::xmlParseFailed, "The Excel workbook could not be parsed. " + std::string(why)};
}

XLSXImportError XLSXImportError::missingWorkbook() {
    return {Kind::missingWorkbook, "The Excel workbook is missing its workbook definition."};
}

XLSXImportError XLSXImportError::missingWorksheet() {
    return {Kind::missingWorksheet, "The Excel workbook does not contain a readable worksheet."};
}

XLSXImportError XLSXImportError::noReadableWorksheet() {
    return {Kind::noReadableWorksheet,
            "The Excel workbook does not contain a worksheet with a header row and data rows."};
}

XLSXImportError XLSXImportError::noHeaderRow() {
    return {Kind::noHeaderRow,
            "The Excel worksheet needs one header row before the respondent rows."};
}

}  // namespace sorvane
