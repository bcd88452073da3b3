#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"

/// What the weights of the survey design mean on other screens, while they are on.
namespace sorvane::SurveyWeights {

inline constexpr std::string_view unweightedNotice =
    "Survey weights are on, but this analysis does not take them: its figures are unweighted and "
    "describe the sample, not the population.";

/// Says so on every result of the content, and above them all.
void sayUnweighted(ScreenContent& content);

/// Weighted figures of one variable, named by what each is of.
struct Descriptives {
    std::string variable;
    /// The mean, or the proportion of ones; the total; then the first by group.
    std::vector<std::pair<std::string, WeightedEstimate>> estimates;
    /// What the design's columns hold that its figures alone do not tell.
    std::vector<std::string> cautions;
    /// Why there are none; empty where there are.
    std::string obstacle;
};

/// Input      `group`: empty for the whole population
Descriptives descriptives(const ImportedDataset& dataset,
                          const SurveyFields& fields,
                          const std::string& variable,
                          const std::string& group);

/// Adds them as the first card, and as a finding where there are some.
void add(const Descriptives& descriptives, ScreenContent& content);

}  // namespace sorvane::SurveyWeights
