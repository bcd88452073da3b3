#include "SorvaneMac/Screens/ShownCells.h"

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane {

ShownCells::ShownCells(const ImportedDataset& dataset, CellForm form) : table_(dataset.rows) {
    if (form == CellForm::stored) {
        return;
    }
    labels_.resize(table_.columnCount());
    for (std::size_t column = 0; column < labels_.size(); ++column) {
        if (const auto& labels = dataset.variables[column].valueLabels) {
            labels_[column] = *labels;
        }
    }
}

std::string_view ShownCells::levelText(std::size_t column, std::size_t level) const {
    const std::string_view stored = table_.column(column).level(level);
    if (!hasLabels(column)) {
        return stored;
    }
    const ValueLabels& labels = labels_[column];
    auto label = labels.find(stored);
    if (label == labels.end()) {
        label = labels.find(UnicodeText::trimmed(stored));
    }
    return label == labels.end() ? stored : label->second;
}

bool ShownCells::isSameAs(const ShownCells& other) const {
    return table_.rowCount() == other.table_.rowCount() &&
           table_.columns() == other.table_.columns() && labels_ == other.labels_;
}

}  // namespace sorvane
