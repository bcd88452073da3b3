#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/TextList.h"
#include "SorvaneCore/Import/Excel/XmlEvents.h"

namespace sorvane {

struct WorkbookSheet {
    std::string name;
    std::string relationshipID;

    bool operator==(const WorkbookSheet&) const = default;
};

/// Gathers the sheets of xl/workbook.xml; one without a name or a relationship is left out.
class WorkbookSheetParser : public XmlEvents {
public:
    std::vector<WorkbookSheet> sheets;

    void startElement(XmlName name, const XmlAttributes& attributes) override;
};

/// Gathers what relationship IDs point to.
class WorkbookRelationshipsParser : public XmlEvents {
public:
    std::map<std::string, std::string, std::less<>> relationships;

    void startElement(XmlName name, const XmlAttributes& attributes) override;
};

/// Gathers the shared strings, the runs of each joined, phonetic runs too.
class SharedStringsParser : public XmlEvents {
public:
    TextList strings;

    void startElement(XmlName name, const XmlAttributes& attributes) override;
    void characters(std::string_view text) override;
    void endElement(XmlName name) override;

private:
    std::string currentString_;
    bool isInsideSharedString_ = false;
    bool isInsideText_ = false;
};

/// Data sheets in file order, then those whose name holds "codebook" in any letter case.
std::vector<WorkbookSheet> orderedWorksheetCandidates(const std::vector<WorkbookSheet>& sheets);

}  // namespace sorvane
