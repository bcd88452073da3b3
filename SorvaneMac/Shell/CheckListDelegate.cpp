#include "SorvaneMac/Shell/CheckListDelegate.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "SorvaneMac/Shell/CheckListModel.h"
#include "SorvaneMac/Shell/RowDelegates.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr int rowHeight = 26;
constexpr int boxSize = 15;
constexpr int air = 6;

QFont pillFont() {
    return Theme::font(11.5);
}

}  // namespace

CheckListDelegate::CheckListDelegate(QString secondLabel, TurnSecond turnSecond)
    : secondLabel_(std::move(secondLabel)), turnSecond_(std::move(turnSecond)) {}

QSize CheckListDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {Theme::px(120), Theme::px(rowHeight)};
}

QRect CheckListDelegate::pillArea(const QRect& row) const {
    const int width = QFontMetrics(pillFont()).horizontalAdvance(secondLabel_) + Theme::px(18);
    const int height = Theme::px(20);
    return {row.right() - width - Theme::px(air), row.center().y() - height / 2 + 1, width, height};
}

void CheckListDelegate::paint(QPainter* painter,
                              const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const ThemeColors& colors = Theme::colors();
    const QRect row = option.rect;
    if (option.state & (QStyle::State_MouseOver | QStyle::State_HasFocus)) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(colors.accentGround);
        painter->drawRoundedRect(row, 4, 4);
    }
    if (option.state & QStyle::State_HasFocus) {
        painter->setPen(QPen(colors.accent, 1.5));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(row.adjusted(1, 1, -1, -1), 4, 4);
    }
    paintBox(*painter, row, index.data(Qt::CheckStateRole).toInt() == Qt::Checked);

    const QVariant second = index.data(CheckListModel::secondRole);
    const int left = row.left() + Theme::px(2 * air + boxSize);
    int right = row.right() - Theme::px(air);
    if (second.isValid()) {
        paintPill(*painter, row, second.toBool());
        right = pillArea(row).left() - Theme::px(air);
    }
    painter->setFont(Theme::font(13));
    const QFontMetrics metrics(painter->font());
    const QString name = index.data().toString();
    const QRect words(left, row.top(), right - left, row.height());
    painter->setPen(colors.text);
    painter->drawText(words, Qt::AlignVCenter,
                      metrics.elidedText(name, Qt::ElideMiddle, words.width()));
    const int used = metrics.horizontalAdvance(name) + Theme::px(8);
    if (used < words.width() - Theme::px(30)) {
        const bool isFlagged = index.data(CheckListModel::flaggedRole).toBool();
        painter->setPen(isFlagged ? colors.caution : colors.quietText);
        painter->setFont(Theme::font(12));
        const QRect rest = words.adjusted(used, 0, 0, 0);
        painter->drawText(rest, Qt::AlignVCenter,
                          QFontMetrics(painter->font())
                              .elidedText(index.data(CheckListModel::detailRole).toString(),
                                          Qt::ElideRight, rest.width()));
    }
    painter->restore();
}

void CheckListDelegate::paintBox(QPainter& painter, const QRect& row, bool isChecked) const {
    const int size = Theme::px(boxSize);
    paintCheckBox(painter,
                  {row.left() + Theme::px(air), row.center().y() - size / 2 + 1, size, size},
                  isChecked);
}

void CheckListDelegate::paintPill(QPainter& painter, const QRect& row, bool isOn) const {
    const ThemeColors& colors = Theme::colors();
    const QRectF area = QRectF(pillArea(row)).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(isOn ? colors.accent : colors.strongBorder, isOn ? 1.5 : 1.0));
    painter.setBrush(isOn ? colors.accentGround : QColor(Qt::transparent));
    painter.drawRoundedRect(area, area.height() / 2.0, area.height() / 2.0);
    painter.setFont(pillFont());
    painter.setPen(isOn ? colors.accent : colors.quietText);
    painter.drawText(area, Qt::AlignCenter, secondLabel_);
}

bool CheckListDelegate::editorEvent(QEvent* event,
                                    QAbstractItemModel* model,
                                    const QStyleOptionViewItem& option,
                                    const QModelIndex& index) {
    const bool hasSecond = index.data(CheckListModel::secondRole).isValid();
    const bool isChecked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    if (event->type() == QEvent::MouseButtonRelease) {
        const QPoint at = static_cast<QMouseEvent*>(event)->position().toPoint();
        if (hasSecond && pillArea(option.rect).contains(at)) {
            turnSecond_(index);
            return true;
        }
        return model->setData(index, isChecked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
    if (event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
        return model->setData(index, isChecked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
    return event->type() == QEvent::MouseButtonPress ||
           event->type() == QEvent::MouseButtonDblClick;
}

}  // namespace sorvane
