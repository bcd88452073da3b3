#include "SorvaneCore/Import/SpreadsheetImporter.h"

#include <algorithm>
#include <array>

#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Import/ImportError.h"

namespace sorvane {

namespace {

constexpr std::array<std::string_view, 3> withoutReader = {"numbers", "svmm", "svmmfield"};

}  // namespace

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
    if (std::find(withoutReader.begin(), withoutReader.end(), extension) != withoutReader.end()) {
        throw SpreadsheetImportError::notReadableYet(extension);
    }
    throw SpreadsheetImportError::unsupportedFileType(extension);
}

}  // namespace sorvane
