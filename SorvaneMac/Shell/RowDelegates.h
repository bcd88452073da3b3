#pragma once

#include <QStyledItemDelegate>

namespace sorvane {

/// Draws a cell as its text with air on both sides.
class CellDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

/// Draws a cell that is a switch as a box in its middle; a click or the space bar turns it.
class SwitchDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    bool editorEvent(QEvent* event,
                     QAbstractItemModel* model,
                     const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
};

/// Draws the check box of the window at a place.
void paintCheckBox(QPainter& painter, const QRect& box, bool isChecked);

}  // namespace sorvane
