#pragma once

#include <string>
#include <vector>

/// The sentences of structural models.
namespace sorvane::SEMWording {

/// What a fitted and what a blocked result need.
std::string fittedMinimum();
std::string blockedMinimum();

std::string notPositiveDefinite();
std::string notIdentified();
std::string noImpliedCovariance();
std::string notConverged();
std::string fewCases();
std::string fewCasesPerParameter();
std::string negativeVariances(const std::vector<std::string>& names);

}  // namespace sorvane::SEMWording
