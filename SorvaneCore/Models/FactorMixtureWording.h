#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Models/FactorMixtureModel.h"

/// The sentences of factor mixtures.
namespace sorvane::FactorMixtureWording {

inline constexpr std::string_view minimumRequired =
    "≥3 indicators; n ≥ 10×K complete cases and more cases than parameters";

std::string tooFewIndicators();
std::string tooFewCases(std::int64_t needed, std::int64_t classes);
std::string constantIndicator(const std::string& name);
std::string unusable();
std::string noConvergenceSignal();
std::string smallClass();
std::string residualAtBound(const std::string& name);
std::string poorlySeparated(double entropy);
std::string oneClassServesBetter();

/// What was found, in one sentence; empty for a blocked result.
std::string summary(const FactorMixtureResult& result);
/// What must not be claimed from it.
std::vector<std::string> cautions();

}  // namespace sorvane::FactorMixtureWording
