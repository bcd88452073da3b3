#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The sentences of multiple imputation.
namespace sorvane::ImputationWording {

inline constexpr std::string_view minimumRequired =
    "at least one observed value per variable; 30+ rows and 5+ imputations recommended";

std::string nothingMissing();
std::string manyMissing();
std::string withoutValues(const std::vector<std::string>& names);
std::string fewRows(std::int64_t rows);
std::string fewImputations(std::int64_t m);

}  // namespace sorvane::ImputationWording
