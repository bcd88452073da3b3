#pragma once

#include <functional>

#include <QAbstractTableModel>

#include "SorvaneCore/Dataset/TextTable.h"
#include "SorvaneMac/Screens/DataPreviewScreen.h"

namespace sorvane {

/// The working table for a grid view, read in place: no cell is copied before it is drawn.
class DataGridModel final : public QAbstractTableModel {
public:
    using Write = std::function<void(std::int64_t row, std::int64_t column, const std::string&)>;
    using Heads = std::vector<DataPreviewScreen::ColumnHead>;

    explicit DataGridModel(Write write) : write_(std::move(write)) {}

    /// Takes another state of the table; a table of the same shape keeps the view's place.
    void show(const TextTable& table, Heads heads, bool isEditable);
    const DataPreviewScreen::ColumnHead& head(int column) const {
        return heads_[static_cast<std::size_t>(column)];
    }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    std::string_view cell(const QModelIndex& index) const {
        return table_.cell(static_cast<std::size_t>(index.row()),
                           static_cast<std::size_t>(index.column()));
    }

    Write write_;
    /// Shares the columns of the dataset.
    TextTable table_;
    Heads heads_;
    bool isEditable_ = false;
};

}  // namespace sorvane
