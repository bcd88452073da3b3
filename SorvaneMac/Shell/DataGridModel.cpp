#include "SorvaneMac/Shell/DataGridModel.h"

#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

bool isNumber(std::string_view text) {
    return NumberText::parse(text).has_value();
}

bool areSameCells(const TextTable& left, const TextTable& right) {
    if (left.rowCount() != right.rowCount() || left.columnCount() != right.columnCount()) {
        return false;
    }
    for (std::size_t column = 0; column < left.columnCount(); ++column) {
        if (left.sharedColumn(column) != right.sharedColumn(column)) {
            return false;
        }
    }
    return true;
}

}  // namespace

void DataGridModel::show(const TextTable& table, Heads heads, bool isEditable) {
    if (areSameCells(table, table_) && heads == heads_ && isEditable == isEditable_) {
        return;
    }
    const bool sameShape = table.rowCount() == table_.rowCount() &&
                           table.columnCount() == table_.columnCount() && isEditable == isEditable_;
    if (!sameShape) {
        beginResetModel();
    }
    table_ = table;
    heads_ = std::move(heads);
    isEditable_ = isEditable;
    if (!sameShape) {
        endResetModel();
    } else if (rowCount() > 0 && columnCount() > 0) {
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
        emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    }
}

int DataGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(table_.rowCount());
}

int DataGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(table_.columnCount());
}

QVariant DataGridModel::data(const QModelIndex& index, int role) const {
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return qtText(cell(index));
        case Qt::TextAlignmentRole:
            return QVariant(Qt::AlignVCenter |
                            (isNumber(cell(index)) ? Qt::AlignRight : Qt::AlignLeft));
        case Qt::ForegroundRole:
            return MissingValue::isMissing(cell(index)) ? QVariant(Theme::colors().quietText)
                                                        : QVariant();
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
            return qtText(head.name + ", " + head.role + ", " + head.missing);
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
    if (text != cell(index)) {
        write_(index.row(), index.column(), text);
    }
    return true;
}

Qt::ItemFlags DataGridModel::flags(const QModelIndex&) const {
    const Qt::ItemFlags read = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return isEditable_ ? read | Qt::ItemIsEditable : read;
}

}  // namespace sorvane
