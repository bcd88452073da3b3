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

/// Adds them as the first card, and as a finding where there are some.
void add(const Descriptives& descriptives, ScreenContent& content);

}  // namespace sorvane::SurveyWeights
