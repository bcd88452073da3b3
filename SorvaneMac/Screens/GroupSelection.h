#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/NamedNumericGroup.h"
#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The fields that hold a numeric outcome and the column of its groups.
struct GroupSelectionFields {
    Field<VariableName>& outcome;
    Field<VariableName>& group;
};

/// The selection of a numeric outcome by the groups of another column, and its values.
namespace GroupSelection {

/// As few values as a group needs to have a variance.
inline constexpr std::int64_t fewestCases = 2;

/// Adds the two pickers; the group's is not offered the outcome.
///
/// Input      `groupChosen` is called after a new choice of the group
void addControls(SetupForm& form,
                 const ImportedDataset& dataset,
                 GroupSelectionFields fields,
                 std::function<void()> groupChosen = {});

/// Both are needed, different, and to be had.
std::optional<Gate> gate(const ImportedDataset& dataset, GroupSelectionFields fields);

/// How many groups have at least two values of the outcome, counted up to two.
///
/// Cost       O(rows until two such groups are found)
bool hasTwoUsableGroups(const ImportedDataset& dataset, GroupSelectionFields fields);

/// The outcome's values in the rows of one group; a cell counts by its text as it stands.
std::vector<double> valuesOf(const ImportedDataset& dataset,
                             GroupSelectionFields fields,
                             const std::string& category);

/// What to say where two chosen groups cannot be compared; absent where they can.
enum class PairProblem { notTwoGroups, same, tooSmall };
struct PairCheck {
    PairProblem problem = PairProblem::notTwoGroups;
    /// The groups with fewer than two values, with the count of each.
    std::vector<std::pair<std::string, std::int64_t>> small;
};
std::optional<PairCheck> checkPair(const ImportedDataset& dataset,
                                   GroupSelectionFields fields,
                                   const std::string& first,
                                   const std::string& second);

}  // namespace GroupSelection

}  // namespace sorvane
