#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"

/// A table in a few words, as screens and the status line say it.
namespace sorvane::DatasetText {

/// "300 rows × 34 columns"; in the singular where there is one.
std::string size(const ImportedDataset& dataset);
std::int64_t missingCells(const ImportedDataset& dataset);
/// "4.1% missing", of all cells; "0.0% missing" without cells.
std::string missing(const ImportedDataset& dataset);
/// "4.1%"; "0.0%" of nothing.
std::string share(std::int64_t part, std::int64_t whole);
/// "1 row", "3 rows".
std::string counted(std::int64_t count, std::string_view noun);
/// How many variables are in the item set.
std::int64_t itemCount(const ImportedDataset& dataset);
/// Whether a file said what the variable or its values mean.
bool isLabelled(const DataVariable& variable);
/// Whether any variable has a label of its own.
bool hasLabels(const ImportedDataset& dataset);
/// "1 = Never" and so on: numbers in ascending order, then other codes.
std::vector<std::string> labelledValues(const DataVariable& variable);
/// The code with its label, "1 = Never"; the code alone where it has none.
std::string labelled(const DataVariable& variable, const std::string& code);

}  // namespace sorvane::DatasetText
