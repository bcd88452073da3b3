#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "SorvaneMac/Screens/Multilevel/MultilevelRun.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// The figures of a multilevel model that was fitted.
namespace sorvane::MultilevelReport {

/// Of a maximum likelihood, with the fixed effects, variances and correlation as parameters; BIC
/// by the number of cases.
struct Criteria {
    double aic = 0.0;
    double bic = 0.0;
};
Criteria criteria(const MultilevelRun& run);

/// The share of the intercept's variance on the scale on which a logistic model's cases have the
/// variance pi^2/3; absent for other models.
std::optional<double> latentICC(const MultilevelRun& run);

/// Whether the variance of a random effect is at its bound, by its place among the components and
/// what it moves.
///
/// Input      `square`: of a slope, see `MultilevelRun::slopeSquare`
bool isNearZero(const MultilevelChoice& choice,
                const MultilevelResult& result,
                std::size_t component,
                double square = 1.0);
bool isNearZero(const MultilevelRun& run, std::size_t component);
/// Whether a component shows nothing of itself: beside the residual, whatever the units, or on the
/// scale of the link.
bool vanishes(const MultilevelRun& run, std::size_t component);

std::vector<Tile> tiles(const MultilevelRun& run);
/// The fixed effects, and the variances with their note.
std::vector<ReportTable> tables(const MultilevelRun& run);

}  // namespace sorvane::MultilevelReport
