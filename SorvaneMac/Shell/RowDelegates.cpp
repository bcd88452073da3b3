#include "SorvaneMac/Shell/RowDelegates.h"

#include <QIcon>
#include <QKeyEvent>
#include <QPainter>

#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr int boxSize = 15;

constexpr int air = 8;

void paintGround(QPainter& painter, const QStyleOptionViewItem& option) {
    if (option.state & QStyle::State_Selected) {
        painter.fillRect(option.rect, Theme::colors().accentGround);
    }
}

void paintFocus(QPainter& painter, const QStyleOptionViewItem& option) {
    if (option.state & QStyle::State_HasFocus) {
        painter.setPen(QPen(Theme::colors().accent, 2.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(option.rect.adjusted(1, 1, -1, -1));
    }
}

bool canTurn(const QModelIndex& index) {
    return index.flags().testFlag(Qt::ItemIsUserCheckable);
}

}  // namespace

void paintCheckBox(QPainter& painter, const QRect& box, bool isChecked) {
    const ThemeColors& colors = Theme::colors();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(isChecked ? colors.accent : colors.strongBorder, 1.0));
    painter.setBrush(isChecked ? colors.accent : colors.field);
    painter.drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    if (isChecked) {
        QIcon(Theme::isDark() ? ":/sorvane/dark/check.svg" : ":/sorvane/light/check.svg")
            .paint(&painter, box);
    }
}

void CellDelegate::paint(QPainter* painter,
                         const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    painter->save();
    paintGround(*painter, option);
    const QVariant font = index.data(Qt::FontRole);
    const QVariant ink = index.data(Qt::ForegroundRole);
    painter->setFont(font.isValid() ? font.value<QFont>() : option.font);
    painter->setPen(ink.isValid() ? ink.value<QColor>() : Theme::colors().text);
    const QRect words = option.rect.adjusted(Theme::px(air), 0, -Theme::px(air), 0);
    painter->drawText(
        words, index.data(Qt::TextAlignmentRole).toInt(),
        painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, words.width()));
    paintFocus(*painter, option);
    painter->restore();
}

void SwitchDelegate::paint(QPainter* painter,
                           const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
    painter->save();
    paintGround(*painter, option);
    if (canTurn(index)) {
        const int size = Theme::px(boxSize);
        const QPoint center = option.rect.center();
        paintCheckBox(*painter, {center.x() - size / 2, center.y() - size / 2, size, size},
                      index.data(Qt::CheckStateRole).toInt() == Qt::Checked);
    }
    paintFocus(*painter, option);
    painter->restore();
}

bool SwitchDelegate::editorEvent(QEvent* event,
                                 QAbstractItemModel* model,
                                 const QStyleOptionViewItem&,
                                 const QModelIndex& index) {
    const bool isClick = event->type() == QEvent::MouseButtonRelease;
    const bool isKey =
        event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space;
    if (!canTurn(index) || !(isClick || isKey)) {
        return false;
    }
    const bool isOn = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    return model->setData(index, isOn ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

}  // namespace sorvane
