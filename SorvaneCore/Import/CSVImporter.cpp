#include "SorvaneCore/Import/CSVImporter.h"

#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Import/ImportError.h"
#include "SorvaneCore/Import/ImportReadinessBuilder.h"
#include "SorvaneCore/Import/TextEncoding.h"
#include "SorvaneCore/Import/VariableClassifier.h"

namespace sorvane {

namespace {

/// Parses the file's text and lets go of it.
CSVParseResult parsedFile(const std::filesystem::path& file, const CSVParser& parser) {
    FileBytes bytes = FileBytes::read(file);
    const auto encoding = TextEncoding::recognized(bytes.view());
    if (!encoding) {
        throw CSVImportError::unreadableTextEncoding();
    }
    if (encoding == TextEncoding::Encoding::utf8) {
        return parser.parse(bytes.view());
    }
    const std::string text = TextEncoding::toUtf8(bytes.view(), *encoding);
    bytes = {};
    return parser.parse(text);
}

}  // namespace

ImportedDataset CSVImporter::importCSV(const std::filesystem::path& file) const {
    const std::string extension = lowerCasedExtension(file);
    if (!extension.empty() && extension != "csv" && extension != "txt" && extension != "tsv") {
        throw CSVImportError::unsupportedFileType(extension);
    }
    return dataset(fileName(file), parsedFile(file, parser));
}

ImportedDataset CSVImporter::importCSV(const std::string& name, std::string_view content) const {
    return dataset(name, parser.parse(content));
}

ImportedDataset CSVImporter::dataset(const std::string& name, CSVParseResult parsed) const {
    if (parsed.rows.rowCount() == 0) {
        throw CSVImportError::noDataRows(static_cast<std::int64_t>(parsed.headers.size()));
    }
    ImportReadinessBuilder::Headers headers =
        ImportReadinessBuilder::normalizedHeaders(parsed.headers);
    ImportedDataset result;
    result.name = name;
    result.headers = std::move(headers.headers);
    result.rows = std::move(parsed.rows);
    result.variables = VariableClassifier().classify(result.headers, result.rows);
    result.importMetadata =
        ImportReadinessBuilder::metadata({.sourceKind = ImportSourceKind::csv}, result.headers,
                                         result.rows, parsed.rowReports, std::move(headers.issues));
    return result;
}

}  // namespace sorvane
