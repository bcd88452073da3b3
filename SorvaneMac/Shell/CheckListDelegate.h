#pragma once

#include <functional>

#include <QStyledItemDelegate>

namespace sorvane {

/// Draws an item of a check list: box, name, detail, and the second switch as a pill at the end.
class CheckListDelegate final : public QStyledItemDelegate {
public:
    using TurnSecond = std::function<void(const QModelIndex&)>;

    CheckListDelegate(QString secondLabel, TurnSecond turnSecond);

    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool editorEvent(QEvent* event,
                     QAbstractItemModel* model,
                     const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

private:
    QRect pillArea(const QRect& row) const;
    void paintBox(QPainter& painter, const QRect& row, bool isChecked) const;
    void paintPill(QPainter& painter, const QRect& row, bool isOn) const;

    QString secondLabel_;
    TurnSecond turnSecond_;
};

}  // namespace sorvane
