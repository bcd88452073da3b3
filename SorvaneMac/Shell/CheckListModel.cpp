#include "SorvaneMac/Shell/CheckListModel.h"

#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

void CheckListModel::show(const CheckListControl& control) {
    const bool isLonger = control.items.size() != control_.items.size();
    if (isLonger) {
        beginResetModel();
    }
    control_ = control;
    if (isLonger) {
        endResetModel();
    } else if (!control_.items.empty()) {
        emit dataChanged(index(0), index(rowCount() - 1));
    }
}

int CheckListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(control_.items.size());
}

QVariant CheckListModel::data(const QModelIndex& index, int role) const {
    const CheckListControl::Item& item = control_.items[static_cast<std::size_t>(index.row())];
    switch (role) {
        case Qt::DisplayRole:
            return qtText(item.name);
        case Qt::ToolTipRole:
        case searchRole:
            return qtText(item.detail.empty() ? item.name : item.name + "\n" + item.detail);
        case Qt::CheckStateRole:
            return item.isChecked ? Qt::Checked : Qt::Unchecked;
        case Qt::AccessibleTextRole:
            return qtText(item.name + (item.second.value_or(false) ? ", " + control_.secondLabel
                                                                   : std::string()));
        case detailRole:
            return qtText(item.detail);
        case flaggedRole:
            return item.isFlagged;
        case secondRole:
            return item.second ? QVariant(*item.second) : QVariant();
        default:
            return {};
    }
}

bool CheckListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !control_.setChecked) {
        return false;
    }
    const std::string name = control_.items[static_cast<std::size_t>(index.row())].name;
    control_.setChecked(name, value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags CheckListModel::flags(const QModelIndex&) const {
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
}

void CheckListModel::turnSecond(const QModelIndex& index) {
    const CheckListControl::Item item = control_.items[static_cast<std::size_t>(index.row())];
    if (item.second && control_.setSecond) {
        control_.setSecond(item.name, !*item.second);
    }
}

}  // namespace sorvane
