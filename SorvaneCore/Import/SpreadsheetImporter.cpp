#include "SorvaneCore/Import/SpreadsheetImporter.h"

#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Import/ImportError.h"

namespace sorvane {

const std::vector<SpreadsheetImporter::Format>& SpreadsheetImporter::formats() {
    static const std::vector<Format> all = {{"Delimited text", {"csv", "tsv", "txt"}},
                                            {"Excel workbook", {"xlsx"}},
                                            {"Numbers document", {"numbers"}},
                                            {"SPSS data", {"sav"}},
                                            {"Stata data", {"dta"}},
                                            {"Survey package", {"svmm", "svmmfield"}}};
    return all;
}

ImportedDataset SpreadsheetImporter::importData(const std::filesystem::path& file) const {
    const std::string extension = lowerCasedExtension(file);
    if (extension == "csv" || extension == "txt" || extension == "tsv") {
        return csvImporter.importCSV(file);
    }
    if (extension == "xlsx") {
        return xlsxImporter.importXLSX(file);
    }
    if (extension == "sav") {
        return statImporter.importSPSS(file);
    }
    if (extension == "dta") {
        return statImporter.importStata(file);
    }
    if (extension == "svmm") {
        return statImporter.importSvmm(file);
    }
    if (extension == "svmmfield") {
        return statImporter.importSvmmField(file);
    }
    if (extension == "numbers") {
        return numbersImporter.importNumbers(file);
    }
    throw SpreadsheetImportError::unsupportedFileType(extension);
}

}  // namespace sorvane
