#pragma once

#include <string>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// Who answered: how the respondents spread over the categories of their characteristics.
namespace sorvane::RespondentProfile {

/// Counts and percentages of each category, for all respondents and for each group.
///
/// Input      characteristics: columns of the dataset; group: a column, or blank for none
/// Method     percentages are of those with an answer; the missing ones have a row of their own.
///            Respondents without a group count in the total alone
/// Cost       O(rows * characteristics)
ReportTable table(const ImportedDataset& dataset,
                  const std::vector<std::string>& characteristics,
                  const std::string& group);

/// The table with its sentence, ready to be staged.
Finding finding(const ImportedDataset& dataset,
                const std::vector<std::string>& characteristics,
                const std::string& group);

}  // namespace sorvane::RespondentProfile
