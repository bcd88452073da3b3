#pragma once

#include <cstdint>
#include <string>

/// The sentences of multilevel models.
namespace sorvane::MultilevelWording {

// Linear models.
std::string needsTwoClusters();
std::string needsTwoLevels();
std::string tooManyLevels();
std::string notConverged();
std::string crossedNotConverged();
std::string singletons(std::int64_t count);
std::string fewerThanFiveClusters();
std::string fewClusters(std::int64_t count);
std::string interceptNearZero();
std::string slopeNearZero();
std::string noConvergenceSignal();
std::string fewerThanFiveLevels();
std::string crossedInterceptNearZero();
std::string noNestedICC();
std::string nestedMinimum();
std::string crossedMinimum();

// Counts and shares.
std::string allOneShare();
std::string noEvents();
std::string noCountVariation();
std::string optimizerSignal();
std::string laplaceSignal();
std::string fewInterceptClusters(std::int64_t count);
std::string fewSlopeClusters(std::int64_t count);
std::string fewFactorLevels(std::int64_t count);
std::string separation();
std::string slopeUsesLaplace();
std::string factorsUseLaplace();
std::string shareMinimum();
std::string countMinimum();
std::string shareSlopeMinimum();
std::string countSlopeMinimum();
std::string factorsMinimum();

// Ordered levels.
std::string tooFewLevels(std::int64_t levels);
std::string tooFewCases(std::int64_t n, std::int64_t parameters);
std::string levelsSeparated();
std::string rowsDropped(std::int64_t rows);
std::string sparseLevel(std::int64_t cases);
std::string proportionalOddsAssumed();
std::string ordinalMinimum();

}  // namespace sorvane::MultilevelWording
