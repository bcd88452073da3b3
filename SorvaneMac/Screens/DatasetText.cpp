#include "SorvaneMac/Screens/DatasetText.h"

#include <algorithm>
#include <limits>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::DatasetText {

std::string counted(std::int64_t count, std::string_view noun) {
    return NumberText::integer(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

std::string size(const ImportedDataset& dataset) {
    return counted(dataset.rowCount(), "row") + " × " + counted(dataset.columnCount(), "column");
}

std::int64_t missingCells(const ImportedDataset& dataset) {
    std::int64_t cells = 0;
    for (const DataVariable& variable : dataset.variables) {
        cells += variable.missingCount;
    }
    return cells;
}

std::string missing(const ImportedDataset& dataset) {
    return share(missingCells(dataset), dataset.rowCount() * dataset.columnCount()) + " missing";
}

std::string share(std::int64_t part, std::int64_t whole) {
    const double percent =
        whole == 0 ? 0.0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
    return NumberText::fixed(percent, 1) + "%";
}

std::int64_t itemCount(const ImportedDataset& dataset) {
    return static_cast<std::int64_t>(VariableLists::reliabilityVariables(dataset).size());
}

bool isLabelled(const DataVariable& variable) {
    return (variable.label && !variable.label->empty()) ||
           (variable.valueLabels && !variable.valueLabels->empty());
}

bool hasLabels(const ImportedDataset& dataset) {
    return std::ranges::any_of(dataset.variables, [](const DataVariable& variable) {
        return variable.label && !variable.label->empty();
    });
}

std::vector<std::string> labelledValues(const DataVariable& variable) {
    struct Value {
        double number = 0.0;
        std::string text;
    };
    std::vector<Value> values;
    if (variable.valueLabels) {
        for (const auto& [code, label] : *variable.valueLabels) {
            const double last = std::numeric_limits<double>::infinity();
            values.push_back({NumberText::parse(code).value_or(last), code + " = " + label});
        }
    }
    std::ranges::stable_sort(values, {}, &Value::number);
    std::vector<std::string> texts;
    for (Value& value : values) {
        texts.push_back(std::move(value.text));
    }
    return texts;
}

std::string labelled(const DataVariable& variable, const std::string& code) {
    if (variable.valueLabels) {
        const auto label = variable.valueLabels->find(code);
        if (label != variable.valueLabels->end()) {
            return code + " = " + label->second;
        }
    }
    return code;
}

}  // namespace sorvane::DatasetText
