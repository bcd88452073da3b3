#include "SorvaneCore/Analyses/Basics/ItemMatrix.h"

#include <utility>

namespace sorvane {

std::vector<NumericColumn> ItemMatrix::columns() const {
    std::vector<NumericColumn> result;
    result.reserve(items);
    for (std::size_t j = 0; j < items; ++j) {
        std::vector<std::optional<double>> column(rows);
        for (std::size_t i = 0; i < rows; ++i) {
            column[i] = cells[i * items + j];
        }
        result.emplace_back(std::move(column));
    }
    return result;
}

}  // namespace sorvane
