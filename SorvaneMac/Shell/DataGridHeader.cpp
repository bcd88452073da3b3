#include "SorvaneMac/Shell/DataGridHeader.h"

#include <algorithm>

#include <QPainter>

#include "SorvaneMac/Shell/DataGridModel.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr int lineHeight = 17;
constexpr int air = 8;
constexpr int narrowest = 84;
constexpr int widest = 190;
constexpr int sampledRows = 40;

}  // namespace

DataGridHeader::DataGridHeader(const DataGridModel& model)
    : QHeaderView(Qt::Horizontal), model_(model) {
    setSectionsClickable(true);
    setHighlightSections(false);
}

int DataGridHeader::suitableWidth(int column) const {
    const DataPreviewScreen::ColumnHead& head = model_.head(column);
    const QFontMetrics name(Theme::font(13, QFont::DemiBold));
    const QFontMetrics small(Theme::font(11.5));
    const int width = std::max({name.horizontalAdvance(qtText(head.name)),
                                small.horizontalAdvance(qtText(head.label)),
                                small.horizontalAdvance(qtText(head.role)),
                                small.horizontalAdvance(qtText(head.missing))});
    int cells = 0;
    const QFontMetrics body(Theme::font(13));
    for (int row = 0; row < std::min(model_.rowCount(), sampledRows); ++row) {
        cells =
            std::max(cells, body.horizontalAdvance(model_.index(row, column).data().toString()));
    }
    return std::clamp(std::max(width, cells) + 2 * Theme::px(air) + 4, Theme::px(narrowest),
                      Theme::px(widest));
}

QSize DataGridHeader::sizeHint() const {
    return {QHeaderView::sizeHint().width(), Theme::px(lineCount() * lineHeight + air)};
}

int DataGridHeader::lineCount() const {
    return model_.hasLabels() ? 4 : 3;
}

void DataGridHeader::paintSection(QPainter* painter, const QRect& area, int section) const {
    const ThemeColors& colors = Theme::colors();
    const DataPreviewScreen::ColumnHead& head = model_.head(section);
    painter->save();
    painter->fillRect(area, colors.sidebar);
    painter->setPen(colors.border);
    painter->drawLine(area.topRight(), area.bottomRight());
    painter->drawLine(area.bottomLeft(), area.bottomRight());
    const int line = (area.height() - Theme::px(air)) / lineCount();
    QRect text(area.left() + Theme::px(air), area.top() + Theme::px(4),
               area.width() - 2 * Theme::px(air), line);
    const auto draw = [painter, &text, line](const std::string& words, const QFont& font) {
        painter->setFont(font);
        painter->drawText(
            text, Qt::AlignVCenter | Qt::AlignLeft,
            QFontMetrics(font).elidedText(qtText(words), Qt::ElideRight, text.width()));
        text.translate(0, line);
    };
    painter->setPen(colors.text);
    draw(head.name, Theme::font(13, QFont::DemiBold));
    if (model_.hasLabels()) {
        draw(head.label, Theme::font(11.5));
    }
    painter->setPen(colors.quietText);
    draw(head.role, Theme::font(11.5));
    draw(head.missing, Theme::font(11.5));
    painter->restore();
}

}  // namespace sorvane
