#include "SorvaneMac/Screens/DatasetText.h"

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

}  // namespace sorvane::DatasetText
