#pragma once

#include <functional>

#include <QAbstractTableModel>

#include "SorvaneMac/Screens/InstrumentMapScreen.h"

namespace sorvane {

/// The rows of the instrument map, for a table view.
class InstrumentMapModel final : public QAbstractTableModel {
public:
    enum Column { included, name, category, probability, inferredRole, reasons, columns };
    using SetIncluded = std::function<void(const Uuid&, bool)>;

    explicit InstrumentMapModel(SetIncluded setIncluded) : setIncluded_(std::move(setIncluded)) {}

    void show(std::vector<InstrumentMapScreen::Row> rows);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    const InstrumentMapScreen::Row& row(const QModelIndex& index) const {
        return rows_[static_cast<std::size_t>(index.row())];
    }
    QString text(const QModelIndex& index) const;

    SetIncluded setIncluded_;
    std::vector<InstrumentMapScreen::Row> rows_;
};

}  // namespace sorvane
