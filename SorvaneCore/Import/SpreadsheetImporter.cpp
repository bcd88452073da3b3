#include "SorvaneCore/Import/SpreadsheetImporter.h"

#include <algorithm>
#include <array>
#include <new>

#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Import/ImportError.h"

namespace sorvane {

namespace {

using File = std::filesystem::path;

/// Who reads the files of one extension, and the name of the format under which they are offered.
struct Reader {
    std::string_view name;
    std::string_view extension;
    ImportedDataset (*read)(const SpreadsheetImporter& all, const File& file) = nullptr;
};

ImportedDataset readCSV(const SpreadsheetImporter& all, const File& file) {
    return all.csvImporter.importCSV(file);
}
ImportedDataset readXLSX(const SpreadsheetImporter& all, const File& file) {
    return all.xlsxImporter.importXLSX(file);
}
ImportedDataset readNumbers(const SpreadsheetImporter& all, const File& file) {
    return all.numbersImporter.importNumbers(file);
}
ImportedDataset readSPSS(const SpreadsheetImporter& all, const File& file) {
    return all.statImporter.importSPSS(file);
}
ImportedDataset readStata(const SpreadsheetImporter& all, const File& file) {
    return all.statImporter.importStata(file);
}
ImportedDataset readSvmm(const SpreadsheetImporter& all, const File& file) {
    return all.statImporter.importSvmm(file);
}
ImportedDataset readSvmmField(const SpreadsheetImporter& all, const File& file) {
    return all.statImporter.importSvmmField(file);
}

constexpr std::array<Reader, 9> readers = {{{"Delimited text", "csv", readCSV},
                                            {"Delimited text", "tsv", readCSV},
                                            {"Delimited text", "txt", readCSV},
                                            {"Excel workbook", "xlsx", readXLSX},
                                            {"Numbers document", "numbers", readNumbers},
                                            {"SPSS data", "sav", readSPSS},
                                            {"Stata data", "dta", readStata},
                                            {"Survey package", "svmm", readSvmm},
                                            {"Survey package", "svmmfield", readSvmmField}}};

std::vector<SpreadsheetImporter::Format> formatsOfReaders() {
    std::vector<SpreadsheetImporter::Format> all;
    for (const Reader& reader : readers) {
        if (all.empty() || all.back().name != reader.name) {
            all.push_back({.name = reader.name, .extensions = {}});
        }
        all.back().extensions.push_back(reader.extension);
    }
    return all;
}

ImportedDataset importByExtension(const SpreadsheetImporter& importers, const File& file) {
    const std::string extension = lowerCasedExtension(file);
    const auto* reader = std::ranges::find(readers, extension, &Reader::extension);
    if (reader == readers.end()) {
        throw SpreadsheetImportError::unsupportedFileType(extension);
    }
    return reader->read(importers, file);
}

}  // namespace

const std::vector<SpreadsheetImporter::Format>& SpreadsheetImporter::formats() {
    static const std::vector<Format> all = formatsOfReaders();
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
