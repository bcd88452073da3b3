#include "SorvaneMac/Shell/VariableTypesModel.h"

#include <array>
#include <boost/describe/enumerators.hpp>
#include <boost/mp11/algorithm.hpp>

#include <QStringList>

#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr std::array<const char*, VariableTypesModel::columns> heads = {
    "Variable", "Role", "Item", "Describe", "Valid", "Missing", "Distinct", "Examples", "Remarks"};

bool isCount(int column) {
    return column == VariableTypesModel::valid || column == VariableTypesModel::missing ||
           column == VariableTypesModel::distinct;
}

bool isSwitch(int column) {
    return column == VariableTypesModel::inReliability ||
           column == VariableTypesModel::inDescriptives;
}

}  // namespace

QStringList VariableTypesModel::kindNames() {
    QStringList names;
    boost::mp11::mp_for_each<boost::describe::describe_enumerators<VariableKind>>(
        [&names](auto enumerator) { names << qtText(displayName(enumerator.value)); });
    return names;
}

void VariableTypesModel::refresh() {
    std::vector<VariableTypesScreen::Row> rows = screen_.rows();
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

int VariableTypesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int VariableTypesModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QString VariableTypesModel::text(const QModelIndex& index) const {
    const VariableTypesScreen::Row& variable = row(index);
    switch (index.column()) {
        case name:
            return qtText(variable.name);
        case role:
            return qtText(displayName(variable.role));
        case valid:
            return qtText(variable.valid);
        case missing:
            return qtText(variable.missing);
        case distinct:
            return qtText(variable.distinct);
        case samples:
            return qtText(variable.samples);
        case warnings:
            return qtText(variable.warnings).replace('\n', "  ");
        default:
            return {};
    }
}

QVariant VariableTypesModel::checkState(const QModelIndex& index) const {
    if (!isSwitch(index.column())) {
        return {};
    }
    const bool isOn =
        index.column() == inReliability ? row(index).inReliability : row(index).inDescriptives;
    return isOn ? Qt::Checked : Qt::Unchecked;
}

QVariant VariableTypesModel::data(const QModelIndex& index, int dataRole) const {
    switch (dataRole) {
        case Qt::DisplayRole:
            return text(index);
        case Qt::EditRole:
            return static_cast<int>(row(index).role);
        case Qt::CheckStateRole:
            return checkState(index);
        case Qt::TextAlignmentRole:
            return QVariant(Qt::AlignVCenter |
                            (isCount(index.column()) ? Qt::AlignRight : Qt::AlignLeft));
        case Qt::FontRole:
            return index.column() == name ? QVariant(Theme::font(13, QFont::DemiBold)) : QVariant();
        case Qt::ForegroundRole:
            return index.column() == warnings ? QVariant(Theme::colors().quietText) : QVariant();
        case Qt::ToolTipRole:
            return index.column() == warnings ? qtText(row(index).warnings)
                   : index.column() == name && !row(index).label.empty() ? qtText(row(index).label)
                                                                         : text(index);
        case Qt::AccessibleTextRole:
            return isSwitch(index.column()) ? qtText(row(index).name) + ", " +
                                                  heads[static_cast<std::size_t>(index.column())]
                                            : text(index);
        default:
            return {};
    }
}

QVariant VariableTypesModel::headerData(int section,
                                        Qt::Orientation orientation,
                                        int dataRole) const {
    if (orientation == Qt::Vertical) {
        return {};
    }
    if (dataRole == Qt::ToolTipRole) {
        return section == inReliability    ? "In the item set of Scale & Reliability"
               : section == inDescriptives ? "In Descriptives & Explore"
                                           : QVariant();
    }
    if (dataRole == Qt::TextAlignmentRole && isCount(section)) {
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    }
    return dataRole == Qt::DisplayRole ? QVariant(heads[static_cast<std::size_t>(section)])
                                       : QVariant();
}

bool VariableTypesModel::setData(const QModelIndex& index, const QVariant& value, int dataRole) {
    const Uuid variable = row(index).id;
    const bool isOn = value.toInt() == Qt::Checked;
    if (dataRole == Qt::EditRole && index.column() == role) {
        screen_.assign({variable}, static_cast<VariableKind>(value.toInt()));
    } else if (dataRole == Qt::CheckStateRole && index.column() == inReliability) {
        screen_.setInReliability(variable, isOn);
    } else if (dataRole == Qt::CheckStateRole && index.column() == inDescriptives) {
        screen_.setInDescriptives(variable, isOn);
    } else {
        return false;
    }
    return true;
}

Qt::ItemFlags VariableTypesModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags read = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (isSwitch(index.column())) {
        return read | Qt::ItemIsUserCheckable;
    }
    return index.column() == role ? read | Qt::ItemIsEditable : read;
}

}  // namespace sorvane
