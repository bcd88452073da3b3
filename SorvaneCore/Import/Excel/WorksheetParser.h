#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/TextList.h"
#include "SorvaneCore/Import/Excel/WorksheetTable.h"
#include "SorvaneCore/Import/Excel/XmlEvents.h"

namespace sorvane {

/// Reads a worksheet's XML into a table: the cached value of each cell, as it stands.
class WorksheetParser : public XmlEvents {
public:
    WorksheetParser(const TextList& sharedStrings, WorksheetTable& table)
        : sharedStrings_(sharedStrings), table_(table) {}

    void startElement(XmlName name, const XmlAttributes& attributes) override;
    void characters(std::string_view text) override;
    void endElement(XmlName name) override;

    /// The column that a cell reference names, counted from 0: 27 for "AB3".
    ///
    /// Failure    no letter, a column beyond the last -> absent
    static std::optional<std::size_t> columnIndex(std::string_view reference);

private:
    enum class CellType { plain, sharedString, boolean, inlineString };
    /// A cell of the current row whose text may stand in `rowTexts_`, which still grows.
    struct RowCell {
        std::size_t column = 0;
        std::size_t begin = 0;
        std::size_t size = 0;
        /// In the place of a text of its own.
        std::optional<std::string_view> shared;
    };

    void startRow(const XmlAttributes& attributes);
    void startCell(const XmlAttributes& attributes);
    void endCell();
    void endRow();
    std::string_view sharedString(std::string_view index) const;
    void addCell(std::string_view text, bool isShared);
    void sortCells();

    const TextList& sharedStrings_;
    WorksheetTable& table_;
    std::int64_t storedRows_ = 0;

    bool isInsideRow_ = false;
    std::int64_t rowNumber_ = 0;
    std::vector<RowCell> rowCells_;
    std::string rowTexts_;
    std::vector<WorksheetCell> cells_;

    std::optional<std::size_t> cellColumn_;
    CellType cellType_ = CellType::plain;
    std::string cellValue_;
    std::string inlineText_;
    bool isInsideValue_ = false;
    bool isInsideInlineText_ = false;
};

}  // namespace sorvane
