#include "SorvaneMac/Shell/RowTableModel.h"

#include <QStringList>

#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

QVariant edge(const RowColumnLook& look) {
    return QVariant(Qt::AlignVCenter | (look.isNumber ? Qt::AlignRight : Qt::AlignLeft));
}

QStringList qtTexts(const std::vector<std::string>& texts) {
    QStringList list;
    for (const std::string& text : texts) {
        list << qtText(text);
    }
    return list;
}

}  // namespace

QVariant RowTableModel::data(const QModelIndex& index, int role) const {
    const RowColumnLook& column = look(index.column());
    switch (role) {
        case Qt::DisplayRole:
            return qtText(text(index)).replace('\n', "  ");
        case Qt::EditRole:
            return column.choices.empty() ? QVariant() : static_cast<int>(chosen(index));
        case choicesRole:
            return qtTexts(column.choices);
        case Qt::CheckStateRole: {
            const std::optional<bool> state = isOn(index);
            return state ? QVariant(*state ? Qt::Checked : Qt::Unchecked) : QVariant();
        }
        case Qt::TextAlignmentRole:
            return edge(column);
        case Qt::FontRole:
            return column.ink == RowColumnLook::Ink::strong
                       ? QVariant(Theme::font(13, QFont::DemiBold))
                       : QVariant();
        case Qt::ForegroundRole:
            return column.ink == RowColumnLook::Ink::quiet ? QVariant(Theme::colors().quietText)
                                                           : QVariant();
        case Qt::ToolTipRole:
            return qtText(toolTip(index));
        case Qt::AccessibleTextRole:
            return qtText(isOn(index) ? switchName(index) : text(index));
        default:
            return {};
    }
}

QVariant RowTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) {
        return {};
    }
    const RowColumnLook& column = look(section);
    switch (role) {
        case Qt::DisplayRole:
            return qtText(column.head);
        case Qt::ToolTipRole:
            return column.headTip.empty() ? QVariant() : qtText(column.headTip);
        case Qt::TextAlignmentRole:
            return edge(column);
        case widthRole:
            return column.width;
        default:
            return {};
    }
}

bool RowTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role == Qt::CheckStateRole && isOn(index)) {
        turn(index, value.toInt() == Qt::Checked);
        return true;
    }
    const std::vector<std::string>& choices = look(index.column()).choices;
    const auto choice = static_cast<std::size_t>(value.toInt());
    if (role == Qt::EditRole && choice < choices.size()) {
        choose(index, choice);
        return true;
    }
    return false;
}

Qt::ItemFlags RowTableModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags read = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (isOn(index)) {
        return read | Qt::ItemIsUserCheckable;
    }
    return look(index.column()).choices.empty() ? read : read | Qt::ItemIsEditable;
}

}  // namespace sorvane
