#pragma once

#include <functional>
#include <vector>

#include <QAbstractTableModel>

#include "SorvaneMac/Screens/DataPreviewScreen.h"
#include "SorvaneMac/Screens/TableSearch.h"

namespace sorvane {

/// The working table for a grid view, read in place: no cell is copied before it is drawn.
class DataGridModel final : public QAbstractTableModel {
public:
    using Write = std::function<void(std::int64_t row, std::int64_t column, const std::string&)>;
    using Heads = std::vector<DataPreviewScreen::ColumnHead>;

    explicit DataGridModel(Write write) : write_(std::move(write)) {}

    /// Takes another state of the table; a table of the same shape keeps the view's place.
    ///
    /// Returns    whether any cell may be another than before
    bool show(ShownCells cells, Heads heads, bool isEditable);
    const DataPreviewScreen::ColumnHead& head(int column) const {
        return heads_[static_cast<std::size_t>(column)];
    }
    /// Whether any column has a label.
    bool hasLabels() const { return hasLabels_; }
    const ShownCells& cells() const { return cells_; }

    /// The cells that stand out as found.
    void setMatches(TableMatches matches);
    const TableMatches& matches() const { return matches_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void announceCells();
    QVariant ground(const QModelIndex& index) const;

    Write write_;
    ShownCells cells_;
    Heads heads_;
    bool hasLabels_ = false;
    TableMatches matches_;
    bool isEditable_ = false;
};

}  // namespace sorvane
