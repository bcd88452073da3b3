#include "SorvaneMac/Shell/RowDelegates.h"

#include <QComboBox>
#include <QIcon>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

#include "SorvaneMac/Shell/RowTableModel.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr int boxSize = 15;

constexpr int air = 8;

void paintFrame(QPainter& painter, const QRect& cell) {
    painter.setPen(QPen(Theme::colors().accent, 2.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(cell.adjusted(1, 1, -1, -1));
}

void paintGround(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
    const QVariant ground = index.data(Qt::BackgroundRole);
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    if (isSelected) {
        painter.fillRect(option.rect, Theme::colors().accentGround);
    } else if (ground.isValid()) {
        painter.fillRect(option.rect, ground.value<QColor>());
    }
    // One that stands out and is selected too is framed, so that it is not lost among the others.
    if (isSelected && ground.isValid()) {
        paintFrame(painter, option.rect);
    }
}

void paintFocus(QPainter& painter, const QStyleOptionViewItem& option) {
    if (option.state & QStyle::State_HasFocus) {
        paintFrame(painter, option.rect);
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
    paintGround(*painter, option, index);
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

void CellDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    const auto* line = qobject_cast<QLineEdit*>(editor);
    if (!line || !line->isModified()) {
        QStyledItemDelegate::setEditorData(editor, index);
    }
}

void RowDelegate::paint(QPainter* painter,
                        const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
    CellDelegate::paint(painter, option, index);
    if (canTurn(index)) {
        painter->save();
        const int size = Theme::px(boxSize);
        const QPoint center = option.rect.center();
        paintCheckBox(*painter, {center.x() - size / 2, center.y() - size / 2, size, size},
                      index.data(Qt::CheckStateRole).toInt() == Qt::Checked);
        painter->restore();
    }
}

bool RowDelegate::editorEvent(QEvent* event,
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

QWidget* RowDelegate::createEditor(QWidget* parent,
                                   const QStyleOptionViewItem&,
                                   const QModelIndex& index) const {
    auto* choice = new QComboBox(parent);
    choice->addItems(index.data(RowTableModel::choicesRole).toStringList());
    choice->setAccessibleName(
        index.model()->headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString());
    connect(choice, &QComboBox::activated, this, [this, choice] {
        auto* self = const_cast<RowDelegate*>(this);
        emit self->commitData(choice);
        emit self->closeEditor(choice);
    });
    return choice;
}

void RowDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto* choice = static_cast<QComboBox*>(editor);
    choice->setCurrentIndex(index.data(Qt::EditRole).toInt());
    choice->showPopup();
}

void RowDelegate::setModelData(QWidget* editor,
                               QAbstractItemModel* model,
                               const QModelIndex& index) const {
    const int chosen = static_cast<QComboBox*>(editor)->currentIndex();
    if (chosen != index.data(Qt::EditRole).toInt()) {
        model->setData(index, chosen, Qt::EditRole);
    }
}

}  // namespace sorvane
