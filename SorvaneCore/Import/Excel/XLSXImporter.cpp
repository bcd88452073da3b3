#include "SorvaneCore/Import/Excel/XLSXImporter.h"

#include <optional>
#include <set>

#include "SorvaneCore/Import/Archive/ZipArchiveReader.h"
#include "SorvaneCore/Import/Archive/ZipError.h"
#include "SorvaneCore/Import/Excel/WorkbookParts.h"
#include "SorvaneCore/Import/Excel/WorksheetParser.h"
#include "SorvaneCore/Import/Excel/XLSXImportError.h"
#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Import/ImportReadinessBuilder.h"

namespace sorvane {

namespace {

FileBytes fileBytes(const std::filesystem::path& file) {
    try {
        return FileBytes::read(file);
    } catch (const FileReadError& error) {
        throw XLSXImportError::unzipFailed(error.what());
    }
}

UnpackedFolder unpackedWorkbook(std::string_view bytes) {
    try {
        return ZipArchiveReader::extract(bytes);
    } catch (const ZipError& error) {
        throw XLSXImportError::unzipFailed(error.what());
    }
}

void parsePart(const std::string& part, XmlEvents& events) {
    if (const std::optional<std::string> failure = parseXml(part, events)) {
        throw XLSXImportError::xmlParseFailed(*failure);
    }
}

/// Parses a part that may be missing.
void parseOptionalPart(const UnpackedFolder& folder, std::string_view path, XmlEvents& events) {
    if (const std::string* part = folder.file(path)) {
        parsePart(*part, events);
    }
}

/// A path that begins with "/" starts from the workbook's folder, any other from "xl" in it.
std::optional<std::string> targetPath(const std::string& target) {
    return standardizedPath(target.starts_with('/') ? target.substr(1) : "xl/" + target);
}

/// The worksheets in the order in which they are tried, each part once.
class Candidates {
public:
    explicit Candidates(const UnpackedFolder& folder) : folder_(folder) {
        const std::string* workbook = folder.file("xl/workbook.xml");
        if (workbook == nullptr) {
            throw XLSXImportError::missingWorkbook();
        }
        WorkbookSheetParser sheets;
        parsePart(*workbook, sheets);
        parseOptionalPart(folder, "xl/_rels/workbook.xml.rels", relationships_);
        sheets_ = orderedWorksheetCandidates(sheets.sheets);
    }

    const std::vector<WorkbookSheet>& sheets() const { return sheets_; }
    /// The part of a sheet; null when there is none, or when it was given before and so has no
    /// table.
    const std::string* part(const WorkbookSheet& sheet) {
        const auto target = relationships_.relationships.find(sheet.relationshipID);
        if (target == relationships_.relationships.end()) {
            return nullptr;
        }
        const std::optional<std::string> path = targetPath(target->second);
        const std::string* part = path ? folder_.file(*path) : nullptr;
        return given_.insert(part).second ? part : nullptr;
    }

private:
    const UnpackedFolder& folder_;
    std::vector<WorkbookSheet> sheets_;
    WorkbookRelationshipsParser relationships_;
    std::set<const std::string*> given_;
};

struct Sheet {
    const std::string& sourceName;
    const std::string& name;
};

ImportedDataset dataset(WorksheetTable& table,
                        const Sheet& sheet,
                        const VariableClassifier& classifier) {
    if (table.headers().empty()) {
        throw XLSXImportError::noHeaderRow();
    }
    if (table.reports().size() == 0) {
        throw XLSXImportError::noDataRows(table.reports().columnCount());
    }
    ImportReadinessBuilder::Headers headers =
        ImportReadinessBuilder::normalizedHeaders(table.headers());
    ImportedDataset result;
    result.name = sheet.sourceName + " — " + sheet.name;
    result.headers = std::move(headers.headers);
    result.rows = table.finish();
    result.variables = classifier.classify(result.headers, result.rows);
    result.importMetadata = ImportReadinessBuilder::metadata(
        {.sourceKind = ImportSourceKind::xlsx, .worksheetName = sheet.name}, result.headers,
        result.rows, table.reports(), std::move(headers.issues));
    return result;
}

WorksheetTable parsedWorksheet(const std::string& part, const TextList& sharedStrings) {
    WorksheetTable table(part.size() + sharedStrings.byteCount());
    WorksheetParser parser(sharedStrings, table);
    parsePart(part, parser);
    if (table.isTooLarge()) {
        throw XLSXImportError::xmlParseFailed(
            "A worksheet spreads what it holds over far too many cells.");
    }
    return table;
}

}  // namespace

ImportedDataset XLSXImporter::importXLSX(const std::filesystem::path& file) const {
    const FileBytes bytes = fileBytes(file);
    return importXLSX(fileName(file), bytes.view());
}

ImportedDataset XLSXImporter::importXLSX(const std::string& sourceName,
                                         std::string_view bytes) const {
    const UnpackedFolder folder = unpackedWorkbook(bytes);
    Candidates candidates(folder);
    SharedStringsParser sharedStrings;
    parseOptionalPart(folder, "xl/sharedStrings.xml", sharedStrings);
    for (const WorkbookSheet& sheet : candidates.sheets()) {
        const std::string* part = candidates.part(sheet);
        if (part == nullptr) {
            continue;
        }
        WorksheetTable table = parsedWorksheet(*part, sharedStrings.strings);
        try {
            return dataset(table, {.sourceName = sourceName, .name = sheet.name}, classifier);
        } catch (const XLSXImportError&) {
            // A worksheet without a table is no failure while another may have one.
            continue;
        }
    }
    throw XLSXImportError::noReadableWorksheet();
}

}  // namespace sorvane
