#pragma once

#include <QAbstractListModel>

#include "SorvaneMac/Screens/SetupForm.h"

namespace sorvane {

/// The items of a check list, for a list view.
class CheckListModel final : public QAbstractListModel {
public:
    enum Role { detailRole = Qt::UserRole, flaggedRole, secondRole, searchRole };

    void show(const CheckListControl& control);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Turns the second switch of an item, where it has one.
    void turnSecond(const QModelIndex& index);
    const CheckListControl& control() const { return control_; }

private:
    CheckListControl control_;
};

}  // namespace sorvane
