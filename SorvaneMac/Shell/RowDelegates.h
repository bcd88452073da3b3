#pragma once

#include <QStyledItemDelegate>

namespace sorvane {

/// Draws a cell as its text with air on both sides. What is being typed into one stands, though the
/// table beneath it is brought up to date.
class CellDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
};

/// Draws and edits the cells of a row table: a switch as a box in its middle, turned by a click or
/// the space bar; a cell with choices by a choice among them.
class RowDelegate final : public CellDelegate {
public:
    using CellDelegate::CellDelegate;

    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    bool editorEvent(QEvent* event,
                     QAbstractItemModel* model,
                     const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
    QWidget* createEditor(QWidget* parent,
                          const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor,
                      QAbstractItemModel* model,
                      const QModelIndex& index) const override;
};

/// Draws the check box of the window at a place.
void paintCheckBox(QPainter& painter, const QRect& box, bool isChecked);

}  // namespace sorvane
