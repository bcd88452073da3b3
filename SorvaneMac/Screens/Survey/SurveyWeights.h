#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Screens/Survey/ChosenDesign.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"

/// What the weights of the survey design mean on other screens, while they are on.
namespace sorvane::SurveyWeights {

inline constexpr std::string_view unweightedNotice =
    "Survey weights are on, but this analysis does not take them: its figures are unweighted and "
    "describe the sample, not the population.";

/// Says so on every result of the content, and above them all.
void sayUnweighted(ScreenContent& content);

/// Weighted figures of one variable.
struct Descriptives {
    /// The mean, or the proportion of ones, of all and by group.
    SurveyRun run;
    WeightedEstimate total;
    /// Why there are none; empty where there are.
    std::string obstacle;
};

/// The design as it was last read, so that its columns are read once while they stay chosen.
class KeptDesign {
public:
    const SurveyDesign& of(const ChosenDesign& chosen);

private:
    std::optional<ChosenDesign> chosen_;
    SurveyDesign design_;
};

/// What is described, and by which column.
struct Described {
    std::string variable;
    const NumericColumn& values;
    /// Empty for the whole population.
    std::string group;
};

Descriptives descriptives(const ImportedDataset& dataset,
                          const SurveyFields& fields,
                          const Described& described,
                          KeptDesign& kept);

/// Each figure with what it is of, such as "Mean", "Total" and "Mean, region = North"; none where
/// there is an obstacle.
std::vector<std::pair<std::string, WeightedEstimate>> labelled(const Descriptives& descriptives);

/// Adds them as the first card, and as a finding where there are some.
void add(const Descriptives& descriptives, ScreenContent& content);

}  // namespace sorvane::SurveyWeights
