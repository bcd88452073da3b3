#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// What stands between a pair of categorical fields and the tests of their table.
namespace sorvane::CategoryTableGates {

/// Two different grouping columns are needed, with a case that has a category in both.
///
/// Input      `pickTwo`: what is said where they are blank or one and the same
std::optional<Gate> unsuitableFields(const ImportedDataset& dataset,
                                     const NonparametricFields& fields,
                                     std::string_view pickTwo);
/// Fisher's exact test takes a table of two rows and two columns.
std::optional<Gate> notTwoByTwo(const ImportedDataset& dataset, const NonparametricFields& fields);
/// McNemar's test takes the same two categories in both columns.
std::optional<Gate> notPairedBinary(const ImportedDataset& dataset,
                                    const NonparametricFields& fields);

/// A test of independence takes at least two categories in each column, among the cases with both.
std::optional<Gate> singleCategory(const ImportedDataset& dataset,
                                   const NonparametricFields& fields);
/// No table could be made of the two fields.
Gate noTable();
Gate needsTwoByTwo(std::string reason);
Gate needsPairedBinary(std::string reason);

}  // namespace sorvane::CategoryTableGates
