#include "SorvaneMac/Shell/InstrumentMapModel.h"

#include <array>

#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr std::array<const char*, InstrumentMapModel::columns> heads = {
    "Item", "Column", "Seems to be", "Scale", "Role found", "Why"};

}  // namespace

void InstrumentMapModel::show(std::vector<InstrumentMapScreen::Row> rows) {
    if (rows == rows_) {
        return;
    }
    const bool sameShape = rows.size() == rows_.size();
    if (!sameShape) {
        beginResetModel();
    }
    rows_ = std::move(rows);
    if (!sameShape) {
        endResetModel();
    } else {
        emit dataChanged(index(0, 0), index(rowCount() - 1, columns - 1));
    }
}

int InstrumentMapModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int InstrumentMapModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QString InstrumentMapModel::text(const QModelIndex& index) const {
    switch (index.column()) {
        case name:
            return qtText(row(index).name);
        case category:
            return qtText(row(index).category);
        case probability:
            return qtText(row(index).probability);
        case inferredRole:
            return qtText(row(index).inferredRole);
        case reasons:
            return qtText(row(index).reasons);
        default:
            return {};
    }
}

QVariant InstrumentMapModel::data(const QModelIndex& index, int role) const {
    switch (role) {
        case Qt::DisplayRole:
            return text(index);
        case Qt::CheckStateRole:
            if (index.column() == included && row(index).canBeIncluded) {
                return row(index).isIncluded ? Qt::Checked : Qt::Unchecked;
            }
            return {};
        case Qt::TextAlignmentRole:
            return QVariant(Qt::AlignVCenter |
                            (index.column() == probability ? Qt::AlignRight : Qt::AlignLeft));
        case Qt::ToolTipRole:
            return index.column() == name && !row(index).label.empty() ? qtText(row(index).label)
                                                                       : text(index);
        case Qt::FontRole:
            return index.column() == name ? QVariant(Theme::font(13, QFont::DemiBold)) : QVariant();
        case Qt::AccessibleTextRole:
            return index.column() == included
                       ? "Include " + qtText(row(index).name) + " in reliability"
                       : text(index);
        default:
            return {};
    }
}

QVariant InstrumentMapModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) {
        return {};
    }
    if (role == Qt::ToolTipRole && section == included) {
        return "Whether the column is in the item set that Scale & Reliability analyzes";
    }
    return role == Qt::DisplayRole ? QVariant(heads[static_cast<std::size_t>(section)])
                                   : QVariant();
}

bool InstrumentMapModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || index.column() != included) {
        return false;
    }
    const Uuid id = row(index).id;
    setIncluded_(id, value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags InstrumentMapModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags read = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const bool turns = index.column() == included && row(index).canBeIncluded;
    return turns ? read | Qt::ItemIsUserCheckable : read;
}

}  // namespace sorvane
