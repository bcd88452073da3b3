#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/Multilevel/MultilevelRun.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// The sentences of a multilevel model beside its notes. All take a run that was fitted, but for the gates.
namespace sorvane::MultilevelWords {

/// "Estimates From a Multilevel Model of score"
std::string title(const MultilevelChoice& choice);
/// The finding's text: the model, its random part, its clusters and its effects.
std::string sentence(const MultilevelRun& run);

/// What not to claim from the model.
std::string caution(const MultilevelRun& run);
/// The engine's issues, and what it does not tell of: variances and a correlation at their bounds,
/// independence at a zero far from all values, a variance that cannot be told from the residual,
/// coefficients without an end.
std::vector<std::string> warnings(const MultilevelRun& run);
/// What the chosen p-values rest on where that deserves a word; absent otherwise.
std::optional<std::string> onPValues(const MultilevelRun& run);

/// Of the first chart; empty where there is none.
std::string figureCaption(const MultilevelRun& run);

/// What is shown where a run has no result, or a blocked one.
Gate couldNotFit(const MultilevelRun& run);

/// "42 clusters of school", "24 levels of plate and 6 levels of sample"
std::string clusters(const MultilevelRun& run);

}  // namespace sorvane::MultilevelWords
