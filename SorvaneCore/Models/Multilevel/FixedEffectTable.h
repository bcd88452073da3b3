#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Models/Multilevel/MultilevelResult.h"

/// The table of fixed effects of a multilevel model.
namespace sorvane::FixedEffectTable {

struct Estimates {
    std::vector<double> values{};
    std::vector<double> variances{};
    /// Of the t distribution; absent for the normal one.
    std::optional<std::vector<double>> degrees{};
};

/// "(Intercept)" and the predictors.
std::vector<std::string> names(std::span<const std::string> predictors);

/// Tests and bounds; without variance, the ratio and its p-value are NaN.
std::vector<MultilevelFixedEffect> of(std::span<const std::string> predictors,
                                      const Estimates& estimates,
                                      double confidenceLevel);

/// A row of NaN for each effect.
std::vector<MultilevelFixedEffect> blank(std::span<const std::string> predictors);

}  // namespace sorvane::FixedEffectTable
