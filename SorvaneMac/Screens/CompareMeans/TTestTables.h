#pragma once

#include <optional>

#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansRuns.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// What both t-tests of Compare Means show alike.
namespace sorvane::TTestTables {

/// t, df, p, the difference with its interval, and d.
ReportTable testTable(const TTestResult& test, const DifferenceInterval& interval);

std::vector<Tile> tiles(const TTestResult& test, std::int64_t cases, const std::string& unit);

/// "statistically significant, t(18) = 2.10, p = .050, d = 0.94"
std::string words(const TTestResult& test);

}  // namespace sorvane::TTestTables
