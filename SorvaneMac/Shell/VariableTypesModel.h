#pragma once

#include <functional>

#include <QAbstractTableModel>

#include "SorvaneMac/Screens/VariableTypesScreen.h"

namespace sorvane {

/// The variables and their roles, for a table view.
class VariableTypesModel final : public QAbstractTableModel {
public:
    enum Column {
        name,
        role,
        inReliability,
        inDescriptives,
        valid,
        missing,
        distinct,
        samples,
        warnings,
        columns
    };

    explicit VariableTypesModel(VariableTypesScreen& screen) : screen_(screen) {}

    void refresh();
    const Uuid& id(int row) const { return rows_[static_cast<std::size_t>(row)].id; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// The names of the roles, in the order of their values.
    static QStringList kindNames();

private:
    const VariableTypesScreen::Row& row(const QModelIndex& index) const {
        return rows_[static_cast<std::size_t>(index.row())];
    }
    QString text(const QModelIndex& index) const;
    QVariant checkState(const QModelIndex& index) const;

    VariableTypesScreen& screen_;
    std::vector<VariableTypesScreen::Row> rows_;
};

}  // namespace sorvane
