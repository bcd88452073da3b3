#include "SorvaneMac/Screens/Nonparametric/NonparametricGates.h"

#include "SorvaneMac/Screens/Categories.h"

namespace sorvane {

Gate notComputable(std::string_view test, std::string reason) {
    return {.title = "Could not compute " + std::string(test) + " for the current selection.",
            .lead = "",
            .text = std::move(reason)};
}

std::vector<std::string> npCategories(const ImportedDataset& dataset,
                                      const NonparametricFields& fields) {
    return Categories::of(dataset, fields.npGroup->name);
}

}  // namespace sorvane
