#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/DataVariable.h"
#include "SorvaneCore/Dataset/TextTable.h"

namespace sorvane {

/// Decides the research role of a column from its name and its cells.
struct VariableClassifier {
    /// The record of one column, with a fresh id.
    ///
    /// Method     the first of twelve rules that fires, from names that are to be ignored, over
    ///            names of administrative, text, demographic, outcome and grouping fields, to what
    ///            the cells look like
    DataVariable classify(std::string_view name, const TextColumn& column) const;
    DataVariable classify(std::string_view name, std::span<const std::string> values) const;

    /// One record per column, in column order; the columns are profiled in parallel.
    std::vector<DataVariable> classify(std::span<const std::string> headers,
                                       const TextTable& rows) const;
};

}  // namespace sorvane
