#include "SorvaneCore/Import/SpreadsheetImporter.h"

#include <new>

#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Import/ImportError.h"

namespace sorvane {

namespace {

ImportedDataset importByExtension(const SpreadsheetImporter& importers,
                                  const std::filesystem::path& file) {
    const std::string extension = lowerCasedExtension(file);
    if (extension == "csv" || extension == "txt" || extension == "tsv") {
        return importers.csvImporter.importCSV(file);
    }
    if (extension == "xlsx") {
        return importers.xlsxImporter.importXLSX(file);
    }
    if (extension == "sav") {
        return importers.statImporter.importSPSS(file);
    }
    if (extension == "dta") {
        return importers.statImporter.importStata(file);
    }
    if (extension == "svmm") {
        return importers.statImporter.importSvmm(file);
    }
    if (extension == "svmmfield") {
        return importers.statImporter.importSvmmField(file);
    }
    if (extension == "numbers") {
        return importers.numbersImporter.importNumbers(file);
    }
    throw SpreadsheetImportError::unsupportedFileType(extension);
}

}  // namespace

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
    try {
        return importByExtension(*this, file);
    } catch (const std::bad_alloc&) {
        throw ImportMemoryError();
    }
}

}  // namespace sorvane
