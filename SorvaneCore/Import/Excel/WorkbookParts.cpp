#include "SorvaneCore/Import/Excel/WorkbookParts.h"

#include <algorithm>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane {

namespace {

/// Many more than any workbook has.
constexpr std::size_t mostSheets = std::size_t{1} << 16;
/// Sixteen for every row that a sheet can have; programs that write more cannot open it again.
constexpr std::size_t mostSharedStrings = std::size_t{1} << 24;

}  // namespace

void WorkbookSheetParser::startElement(XmlName name, const XmlAttributes& attributes) {
    if (name != "sheet") {
        return;
    }
    const auto sheetName = attributes.value("name");
    auto relationshipID = attributes.value("r:id");
    if (!relationshipID) {
        relationshipID = attributes.valueWhere([](XmlName attribute) {
            return attribute == "id" || attribute.text().ends_with(":id");
        });
    }
    if (sheetName && relationshipID) {
        sheets.push_back(
            {.name = std::string(*sheetName), .relationshipID = std::string(*relationshipID)});
    }
    if (sheets.size() > mostSheets) {
        refuse("It lists far too many worksheets.");
    }
}

void WorkbookRelationshipsParser::startElement(XmlName name, const XmlAttributes& attributes) {
    const auto id = attributes.value("Id");
    const auto target = attributes.value("Target");
    if (name == "Relationship" && id && target) {
        relationships[std::string(*id)] = *target;
    }
    if (relationships.size() > mostSheets) {
        refuse("It lists far too many parts.");
    }
}

void SharedStringsParser::startElement(XmlName name, const XmlAttributes&) {
    if (name == "si") {
        isInsideSharedString_ = true;
        currentString_.clear();
    } else if (name == "t" && isInsideSharedString_) {
        isInsideText_ = true;
    }
}

void SharedStringsParser::characters(std::string_view text) {
    if (isInsideText_) {
        currentString_.append(text);
    }
}

void SharedStringsParser::endElement(XmlName name) {
    if (name == "t") {
        isInsideText_ = false;
    } else if (name == "si") {
        strings.append(currentString_);
        isInsideSharedString_ = false;
        if (strings.size() > mostSharedStrings) {
            refuse("It has far more shared strings than worksheets can show.");
        }
    }
}

std::vector<WorkbookSheet> orderedWorksheetCandidates(const std::vector<WorkbookSheet>& sheets) {
    std::vector<WorkbookSheet> ordered = sheets;
    std::stable_partition(ordered.begin(), ordered.end(), [](const WorkbookSheet& sheet) {
        return UnicodeText::lowerCased(sheet.name).find("codebook") == std::string::npos;
    });
    return ordered;
}

}  // namespace sorvane
