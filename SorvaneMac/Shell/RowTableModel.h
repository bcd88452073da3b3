#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QAbstractTableModel>

namespace sorvane {

/// How a column of a row table looks, whatever the rows hold.
struct RowColumnLook {
    enum class Ink { plain, strong, quiet };

    std::string head;
    /// A length of the design; the last column takes what is left.
    int width = 120;
    std::string headTip;
    /// Numbers stand at the right edge.
    bool isNumber = false;
    Ink ink = Ink::plain;
    /// What a cell can be set to; a column without choices is read only.
    std::vector<std::string> choices;
};

/// A column of a table of `Row` records: how it looks, what its cells say, and what a change does.
template <typename Row>
struct RowColumn {
    RowColumnLook look;
    std::function<std::string(const Row&)> text;
    /// Where it says more than the text.
    std::function<std::string(const Row&)> toolTip;
    /// What a screen reader says of a switch.
    std::function<std::string(const Row&)> switchName;
    /// For a column of switches; absent in a row that cannot be turned.
    std::function<std::optional<bool>(const Row&)> isOn;
    std::function<void(const Row&, bool)> turn;
    /// For a column with choices: which one stands.
    std::function<std::size_t(const Row&)> chosen;
    std::function<void(const Row&, std::size_t)> choose;
};

/// The part of a row table's model that does not depend on what the rows are.
class RowTableModel : public QAbstractTableModel {
public:
    /// Roles of the horizontal head.
    enum HeadRole { widthRole = Qt::UserRole };
    /// Roles of a cell.
    enum CellRole { choicesRole = Qt::UserRole };

    QVariant data(const QModelIndex& index, int role) const final;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const final;
    bool setData(const QModelIndex& index, const QVariant& value, int role) final;
    Qt::ItemFlags flags(const QModelIndex& index) const final;

protected:
    virtual const RowColumnLook& look(int column) const = 0;
    virtual std::string text(const QModelIndex& index) const = 0;
    virtual std::string toolTip(const QModelIndex& index) const = 0;
    virtual std::string switchName(const QModelIndex& index) const = 0;
    virtual std::optional<bool> isOn(const QModelIndex& index) const = 0;
    virtual void turn(const QModelIndex& index, bool isOn) = 0;
    virtual std::size_t chosen(const QModelIndex& index) const = 0;
    virtual void choose(const QModelIndex& index, std::size_t choice) = 0;

    /// Announces rows that take the place of others: a table of as many rows keeps its selection.
    template <typename Replace>
    void replaceRows(int rows, Replace&& replace) {
        const bool sameShape = rows == rowCount();
        if (!sameShape) {
            beginResetModel();
        }
        std::forward<Replace>(replace)();
        if (!sameShape) {
            endResetModel();
        } else if (rows > 0) {
            emit dataChanged(index(0, 0), index(rows - 1, columnCount() - 1));
        }
    }
};

/// Records as the rows of a table view, described by a list of columns.
template <typename Row>
class RecordTableModel final : public RowTableModel {
public:
    explicit RecordTableModel(std::vector<RowColumn<Row>> columns) : columns_(std::move(columns)) {}

    void show(std::vector<Row> rows) {
        if (rows != rows_) {
            replaceRows(static_cast<int>(rows.size()), [&] { rows_ = std::move(rows); });
        }
    }
    const Row& row(int at) const { return rows_[static_cast<std::size_t>(at)]; }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(columns_.size());
    }

protected:
    const RowColumnLook& look(int at) const override { return column(at).look; }
    std::string text(const QModelIndex& index) const override {
        const auto& say = column(index.column()).text;
        return say ? say(row(index.row())) : std::string();
    }
    std::string toolTip(const QModelIndex& index) const override {
        const auto& say = column(index.column()).toolTip;
        const std::string tip = say ? say(row(index.row())) : std::string();
        return tip.empty() ? text(index) : tip;
    }
    std::string switchName(const QModelIndex& index) const override {
        const auto& say = column(index.column()).switchName;
        return say ? say(row(index.row())) : std::string();
    }
    std::optional<bool> isOn(const QModelIndex& index) const override {
        const auto& read = column(index.column()).isOn;
        return read ? read(row(index.row())) : std::nullopt;
    }
    // What a change does may replace the rows, so that it gets a copy of its row.
    void turn(const QModelIndex& index, bool isOn) override {
        const Row changed = row(index.row());
        column(index.column()).turn(changed, isOn);
    }
    std::size_t chosen(const QModelIndex& index) const override {
        return column(index.column()).chosen(row(index.row()));
    }
    void choose(const QModelIndex& index, std::size_t choice) override {
        const Row changed = row(index.row());
        column(index.column()).choose(changed, choice);
    }

private:
    const RowColumn<Row>& column(int at) const { return columns_[static_cast<std::size_t>(at)]; }

    std::vector<RowColumn<Row>> columns_;
    std::vector<Row> rows_;
};

}  // namespace sorvane
