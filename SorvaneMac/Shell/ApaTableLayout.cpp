#include "SorvaneMac/Shell/ApaTableLayout.h"

#include <algorithm>

#include <QFontMetrics>
#include <QPainter>
#include <QRegularExpression>

#include "SorvaneMac/Report/APAFormat.h"
#include "SorvaneMac/Report/StatisticalSymbols.h"
#include "SorvaneMac/Report/UnbrokenText.h"
#include "SorvaneMac/Shell/BreakableText.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr int gap = 8;
constexpr int rowAir = 7;
constexpr int headAir = 9;
constexpr int noteAir = 6;
/// Texts wider than this wrap inside their cell.
constexpr int widestText = 250;
constexpr int narrowestText = 110;
/// Texts wider than this read from the left and not from the middle.
constexpr int proseFrom = 150;
constexpr int headLines = 3;
constexpr int wrap = Qt::TextWordWrap;

bool isNumberText(const QString& text) {
    static const QRegularExpression number(
        R"(^[<>=≤≥]?\s*[-−+]?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?\s*[%*†]*$)");
    return number.match(text).hasMatch();
}

bool isPlaceholder(const QString& text) {
    return text.isEmpty() || text == "--" || text == "—" || text == "-";
}

/// Of the pieces between which a line may break.
int widestWord(const QString& text, const QFontMetrics& metrics) {
    static const QRegularExpression ends("[ \\x{200B}]");
    int widest = 0;
    for (const QString& word : text.split(ends, Qt::SkipEmptyParts)) {
        widest = std::max(widest, metrics.horizontalAdvance(word));
    }
    return widest;
}

int wrappedHeight(const QString& text, const QFontMetrics& metrics, int width) {
    return metrics.boundingRect(0, 0, width, 1 << 20, wrap, text).height();
}

}  // namespace

ApaTableLayout::ApaTableLayout(const ReportTable& table)
    : body_(Theme::font(13)),
      bold_(Theme::font(13, QFont::DemiBold)),
      italicHead_(bold_),
      note_(Theme::font(12)) {
    italicHead_.setItalic(true);
    const ReportTable shown = APAFormat::normalize(table);
    readCells(shown);
    readGroups(shown);
    noteText_ = BreakableText::of(qtText(shown.note.value_or("")));
    for (std::size_t index = 0; index < columns_.size(); ++index) {
        measureColumn(index);
    }
    for (const Group& group : groups_) {
        makeRoomFor(group);
    }
    for (const Column& column : columns_) {
        minimumWidth_ += column.minimum;
        naturalWidth_ += column.natural;
    }
}

void ApaTableLayout::readCells(const ReportTable& table) {
    std::size_t count = table.headers.size();
    for (const auto& row : table.rows) {
        count = std::max(count, row.size());
    }
    columns_.resize(count);
    for (std::size_t at = 0; at < table.headers.size(); ++at) {
        columns_[at].head = BreakableText::of(qtText(UnbrokenText::wordsHeld(table.headers[at])));
        columns_[at].headIsItalic = StatisticalSymbols::isSymbol(table.headers[at]);
    }
    rows_.reserve(table.rows.size());
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
        std::vector<Cell>& cells = rows_.emplace_back(count);
        for (std::size_t at = 0; at < table.rows[row].size(); ++at) {
            cells[at].text = qtText(table.rows[row][at]);
            cells[at].isBold = table.boldMask && row < table.boldMask->size() &&
                               at < (*table.boldMask)[row].size() && (*table.boldMask)[row][at];
        }
    }
}

void ApaTableLayout::readGroups(const ReportTable& table) {
    if (!table.groupHeaders) {
        return;
    }
    int column = 0;
    for (const ReportGroupHeader& group : *table.groupHeaders) {
        const int span = std::clamp(group.span, 1, static_cast<int>(columns_.size()) - column);
        if (span < 1) {
            return;
        }
        groups_.push_back({BreakableText::of(qtText(group.label)), column, span});
        column += span;
    }
}

void ApaTableLayout::measureColumn(std::size_t index) {
    Column& column = columns_[index];
    const QFontMetrics plain(body_);
    const QFontMetrics strong(bold_);
    int widest = 0;
    int word = 0;
    std::size_t numbers = 0;
    std::size_t texts = 0;
    for (std::vector<Cell>& row : rows_) {
        Cell& cell = row[index];
        const QFontMetrics& metrics = cell.isBold ? strong : plain;
        cell.width = metrics.horizontalAdvance(cell.text);
        const qsizetype point = cell.text.indexOf('.');
        cell.lead = point < 0 ? cell.width : metrics.horizontalAdvance(cell.text.left(point));
        widest = std::max(widest, cell.width);
        const bool isNumber = isNumberText(cell.text);
        if (!isPlaceholder(cell.text)) {
            ++(isNumber ? numbers : texts);
        }
        if (!isNumber) {
            cell.text = BreakableText::of(cell.text);
        }
        word = std::max(word, widestWord(cell.text, metrics));
    }
    column.isNumeric = index > 0 && numbers > 0 && texts == 0;
    if (column.isNumeric) {
        for (const std::vector<Cell>& row : rows_) {
            const Cell& cell = row[index];
            if (!isPlaceholder(cell.text)) {
                column.lead = std::max(column.lead, cell.lead);
                column.rest = std::max(column.rest, cell.width - cell.lead);
            }
        }
        widest = std::max(widest, column.lead + column.rest);
    }
    column.isProse = index == 0 || (texts > 0 && widest > Theme::px(proseFrom));
    const int air = 2 * Theme::px(gap);
    const int textWidth = std::min(widest, Theme::px(widestText));
    const int smallest =
        column.isNumeric ? widest : std::min(widest, std::max(word, Theme::px(narrowestText)));
    column.natural = measureHead(column, textWidth) + air;
    column.minimum = std::min(column.natural, measureHead(column, smallest) + air);
}

/// The columns of a group are together as wide as its longest word, and as its label if they may.
void ApaTableLayout::makeRoomFor(const Group& group) {
    const QFontMetrics metrics(bold_);
    const int air = 2 * Theme::px(gap);
    const int label = std::min(metrics.horizontalAdvance(group.label), Theme::px(widestText)) + air;
    const int word = std::min(widestWord(group.label, metrics) + air, label);
    int natural = 0;
    int minimum = 0;
    for (int at = 0; at < group.span; ++at) {
        const Column& column = columns_[static_cast<std::size_t>(group.firstColumn + at)];
        natural += column.natural;
        minimum += column.minimum;
    }
    for (int at = 0; at < group.span; ++at) {
        Column& column = columns_[static_cast<std::size_t>(group.firstColumn + at)];
        column.natural += (std::max(label - natural, 0) + group.span - 1) / group.span;
        column.minimum += (std::max(word - minimum, 0) + group.span - 1) / group.span;
    }
}

int ApaTableLayout::measureHead(const Column& column, int cellWidth) const {
    const QFontMetrics metrics(column.headIsItalic ? italicHead_ : bold_);
    int width = std::max(cellWidth, widestWord(column.head, metrics));
    const int step = Theme::px(8);
    while (wrappedHeight(column.head, metrics, width) > headLines * metrics.lineSpacing() + 1) {
        width += step;
    }
    return width;
}

void ApaTableLayout::setWidth(int width) {
    if (width == room_) {
        return;
    }
    room_ = width;
    shareWidth(width);
    placeRows();
}

void ApaTableLayout::shareWidth(int width) {
    width_ = std::max(width, minimumWidth_);
    const int target = std::min(width_, 2 * naturalWidth_);
    const int flexible = std::max(naturalWidth_ - minimumWidth_, 1);
    const int missing = std::max(naturalWidth_ - target, 0);
    const int spare = std::max(target - naturalWidth_, 0);
    int left = 0;
    for (Column& column : columns_) {
        column.left = left;
        column.width = column.natural - (column.natural - column.minimum) * missing / flexible +
                       spare / static_cast<int>(columns_.size());
        left += column.width;
    }
}

int ApaTableLayout::cellHeight(const Cell& cell, const Column& column) const {
    const QFontMetrics metrics(cell.isBold ? bold_ : body_);
    const int inside = column.width - 2 * Theme::px(gap);
    return cell.width <= inside ? metrics.height() : wrappedHeight(cell.text, metrics, inside);
}

int ApaTableLayout::groupWidth(const Group& group) const {
    const Column& first = columns_[static_cast<std::size_t>(group.firstColumn)];
    const Column& last = columns_[static_cast<std::size_t>(group.firstColumn + group.span - 1)];
    return last.left + last.width - first.left;
}

void ApaTableLayout::placeRows() {
    groupHeight_ = 0;
    for (const Group& group : groups_) {
        const int inside = groupWidth(group) - 2 * Theme::px(gap);
        const int label = wrappedHeight(group.label, QFontMetrics(bold_), inside);
        groupHeight_ = std::max(groupHeight_, label + Theme::px(headAir));
    }
    int heads = 0;
    for (const Column& column : columns_) {
        const QFontMetrics metrics(column.headIsItalic ? italicHead_ : bold_);
        heads =
            std::max(heads, wrappedHeight(column.head, metrics, column.width - 2 * Theme::px(gap)));
    }
    headHeight_ = heads + 2 * Theme::px(headAir) - Theme::px(4);
    int top = groupHeight_ + headHeight_ + Theme::px(3);
    rowTops_.clear();
    for (const std::vector<Cell>& row : rows_) {
        rowTops_.push_back(top);
        int height = 0;
        for (std::size_t at = 0; at < row.size(); ++at) {
            height = std::max(height, cellHeight(row[at], columns_[at]));
        }
        top += height + Theme::px(rowAir);
    }
    top += Theme::px(3);
    rowTops_.push_back(top);
    height_ = top + 2;
    if (!noteText_.isEmpty()) {
        height_ += Theme::px(noteAir) +
                   wrappedHeight("Note. " + noteText_, QFontMetrics(note_), room_) + 2;
    }
}

QRect ApaTableLayout::box(const Column& column, int top, int height) const {
    const int air = Theme::px(gap);
    return {column.left + air, top, column.width - 2 * air, height};
}

void ApaTableLayout::paint(QPainter& painter, const QRect& clip, int scrolled) const {
    painter.setPen(Theme::colors().text);
    paintGroups(painter);
    paintHead(painter);
    const auto above = std::upper_bound(rowTops_.begin(), rowTops_.end() - 1, clip.top());
    auto row = static_cast<std::size_t>(std::max<std::ptrdiff_t>(above - rowTops_.begin() - 1, 0));
    for (; row < rows_.size() && rowTops_[row] <= clip.bottom(); ++row) {
        paintRow(painter, row);
    }
    paintRules(painter);
    paintNote(painter, scrolled);
}

void ApaTableLayout::paintGroups(QPainter& painter) const {
    painter.setFont(bold_);
    for (const Group& group : groups_) {
        const int air = Theme::px(gap);
        const int left = columns_[static_cast<std::size_t>(group.firstColumn)].left;
        const QRect area(left + air, 1, groupWidth(group) - 2 * air, groupHeight_);
        painter.drawText(area, wrap | Qt::AlignCenter, group.label);
        if (group.span > 1 && !group.label.isEmpty()) {
            painter.drawLine(area.bottomLeft(), area.bottomRight());
        }
    }
}

void ApaTableLayout::paintHead(QPainter& painter) const {
    for (std::size_t at = 0; at < columns_.size(); ++at) {
        const Column& column = columns_[at];
        painter.setFont(column.headIsItalic ? italicHead_ : bold_);
        const Qt::AlignmentFlag side = column.isProse ? Qt::AlignLeft : Qt::AlignHCenter;
        painter.drawText(box(column, groupHeight_, headHeight_), wrap | side | Qt::AlignVCenter,
                         column.head);
    }
}

void ApaTableLayout::paintRow(QPainter& painter, std::size_t row) const {
    const int height = rowTops_[row + 1] - rowTops_[row];
    for (std::size_t at = 0; at < columns_.size(); ++at) {
        const Column& column = columns_[at];
        const Cell& cell = rows_[row][at];
        painter.setFont(cell.isBold ? bold_ : body_);
        const QRect area = box(column, rowTops_[row], height);
        if (column.isNumeric && !isPlaceholder(cell.text)) {
            const int block = area.left() + (area.width() - column.lead - column.rest) / 2;
            painter.drawText(block + column.lead - cell.lead, area.top(), cell.width + 2, height,
                             Qt::AlignLeft | Qt::AlignVCenter, cell.text);
        } else {
            const Qt::AlignmentFlag side = column.isProse ? Qt::AlignLeft : Qt::AlignHCenter;
            painter.drawText(area, wrap | side | Qt::AlignVCenter, cell.text);
        }
    }
}

void ApaTableLayout::paintRules(QPainter& painter) const {
    if (columns_.empty()) {
        return;
    }
    const int right = columns_.back().left + columns_.back().width;
    const QColor ink = Theme::colors().text;
    painter.fillRect(QRect(0, 0, right, 2), ink);
    painter.fillRect(QRect(0, groupHeight_ + headHeight_, right, 1), ink);
    painter.fillRect(QRect(0, rowTops_.back(), right, 2), ink);
}

void ApaTableLayout::paintNote(QPainter& painter, int left) const {
    if (noteText_.isEmpty()) {
        return;
    }
    const QRect area(left, rowTops_.back() + Theme::px(noteAir), room_, 1 << 20);
    QFont lead = note_;
    lead.setItalic(true);
    painter.setFont(lead);
    painter.drawText(area, Qt::AlignLeft, "Note. ");
    painter.setFont(note_);
    // The text is set whole with an indent of the lead's width, which only its first line keeps.
    QString indent;
    const QFontMetrics metrics(note_);
    const int wanted = QFontMetrics(lead).horizontalAdvance("Note. ");
    while (metrics.horizontalAdvance(indent) < wanted) {
        indent += QChar(QChar::Nbsp);
    }
    painter.drawText(area, wrap | Qt::AlignLeft, indent + noteText_);
}

}  // namespace sorvane
