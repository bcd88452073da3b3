#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Models/Structural/MeasurementInvariance.h"

/// The sentences of measurement invariance.
namespace sorvane::InvarianceWording {

inline constexpr std::string_view minimumRequired =
    "two or more groups, three or more items that vary in each, and more cases than items in every "
    "group";

std::string tooFewGroups(std::int64_t groups);
std::string tooFewItems();
std::string tooFewCases(const std::string& group, std::int64_t n, std::int64_t items);
std::string singular(const std::string& group);
std::string configuralFailed();
std::string rowsDropped(std::int64_t rows);
std::string notConverged(InvarianceLevel level);
std::string negativeVariance(InvarianceLevel level);
std::string smallGroup(const std::string& group, std::int64_t n);
std::string fewCategories(const std::string& item);
std::string poorConfiguralFit(double cfi, double rmsea);

/// What a comparison says by the usual cut-offs, in one sentence.
std::string comparison(const InvarianceComparison& each);
/// The strictest level that the cut-offs support; empty for a blocked result.
std::string summary(const InvarianceResult& result);
/// What must not be claimed from it.
std::vector<std::string> cautions();

}  // namespace sorvane::InvarianceWording
