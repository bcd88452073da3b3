#include "SorvaneMac/Shell/DataGridModel.h"

#include <algorithm>

#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

bool isNumber(std::string_view text) {
    return NumberText::parse(text).has_value();
}

CellPlace placeOf(const QModelIndex& index) {
    return {.row = static_cast<std::size_t>(index.row()),
            .column = static_cast<std::size_t>(index.column())};
}

std::string_view stored(const ShownCells& cells, const QModelIndex& index) {
    return cells.table().cell(placeOf(index).row, placeOf(index).column);
}

std::string_view shown(const ShownCells& cells, const QModelIndex& index) {
    return cells.text(placeOf(index).row, placeOf(index).column);
}

}  // namespace

bool DataGridModel::show(ShownCells cells, Heads heads, bool isEditable) {
    const bool sameCells = cells.isSameAs(cells_);
    if (sameCells && heads == heads_ && isEditable == isEditable_) {
        return false;
    }
    const TextTable& table = cells.table();
    const bool sameShape = table.rowCount() == cells_.table().rowCount() &&
                           table.columnCount() == cells_.table().columnCount() &&
                           isEditable == isEditable_;
    if (!sameShape) {
        beginResetModel();
    }
    cells_ = std::move(cells);
    heads_ = std::move(heads);
    hasLabels_ = std::ranges::any_of(
        heads_, [](const DataPreviewScreen::ColumnHead& head) { return !head.label.empty(); });
    isEditable_ = isEditable;
    if (!sameShape) {
        matches_ = {};
        endResetModel();
    } else if (columnCount() > 0) {
        announceCells();
        emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    }
    return !sameCells;
}

void DataGridModel::setMatches(TableMatches matches) {
    matches_ = std::move(matches);
    announceCells();
}

void DataGridModel::announceCells() {
    if (rowCount() > 0 && columnCount() > 0) {
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    }
}

QVariant DataGridModel::ground(const QModelIndex& index) const {
    return matches_.contains(placeOf(index)) ? QVariant(Theme::colors().cautionGround) : QVariant();
}

int DataGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(cells_.table().rowCount());
}

int DataGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(cells_.table().columnCount());
}

QVariant DataGridModel::data(const QModelIndex& index, int role) const {
    switch (role) {
        case Qt::DisplayRole:
            return qtText(shown(cells_, index));
        case Qt::EditRole:
        case Qt::ToolTipRole:
            return qtText(stored(cells_, index));
        case Qt::TextAlignmentRole:
            return QVariant(Qt::AlignVCenter |
                            (isNumber(shown(cells_, index)) ? Qt::AlignRight : Qt::AlignLeft));
        case Qt::ForegroundRole:
            return MissingValue::isMissing(stored(cells_, index))
                       ? QVariant(Theme::colors().quietText)
                       : QVariant();
        case Qt::BackgroundRole:
            return ground(index);
        default:
            return {};
    }
}

QVariant DataGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) {
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    }
    const DataPreviewScreen::ColumnHead& head = heads_[static_cast<std::size_t>(section)];
    switch (role) {
        case Qt::DisplayRole:
            return qtText(head.name);
        case Qt::AccessibleTextRole:
            return qtText(head.name + (head.label.empty() ? "" : ", " + head.label) + ", " +
                          head.role + ", " + head.missing);
        case Qt::ToolTipRole:
            return qtText(head.name + (head.details.empty() ? "" : "\n" + head.details));
        default:
            return {};
    }
}

bool DataGridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole) {
        return false;
    }
    const std::string text = utf8(value.toString());
    if (text != stored(cells_, index)) {
        write_(index.row(), index.column(), text);
    }
    return true;
}

Qt::ItemFlags DataGridModel::flags(const QModelIndex&) const {
    const Qt::ItemFlags read = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return isEditable_ ? read | Qt::ItemIsEditable : read;
}

}  // namespace sorvane
