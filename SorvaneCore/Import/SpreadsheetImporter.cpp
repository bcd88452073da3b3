#include "SorvaneCore/Import/SpreadsheetImporter.h"

#include <algorithm>
#include <array>

#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Import/ImportError.h"

namespace sorvane {

namespace {

constexpr std::array<std::string_view, 6> withoutReader = {"xlsx", "numbers", "sav",
                                                           "dta",  "svmm",    "svmmfield"};

}  // namespace

ImportedDataset SpreadsheetImporter::importData(const std::filesystem::path& file) const {
    const std::string extension = lowerCasedExtension(file);
    if (extension == "csv" || extension == "txt" || extension == "tsv") {
        return csvImporter.importCSV(file);
    }
    if (std::find(withoutReader.begin(), withoutReader.end(), extension) != withoutReader.end()) {
        throw SpreadsheetImportError::notReadableYet(extension);
    }
    throw SpreadsheetImportError::unsupportedFileType(extension);
}

}  // namespace sorvane
