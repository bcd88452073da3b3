#pragma once

#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/WilksTest.h"
#include "SorvaneMac/Report/ReportItem.h"

/// Tables of functions: weighted combinations of variables, one after the other.
namespace sorvane::FunctionTables {

/// One list per function, of one figure per variable.
using Figures = std::vector<std::vector<double>>;

/// A block of columns under one head, a column per function.
struct Block {
    std::string label;
    Figures figures;
    int decimals = 3;
};

/// A row per variable, the blocks side by side.
ReportTable ofVariables(const std::vector<std::string>& variables,
                        const std::vector<Block>& blocks);

/// Wilks' tests from each function onward.
ReportTable tests(const std::vector<WilksTest>& tests);

}  // namespace sorvane::FunctionTables
