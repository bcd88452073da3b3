#pragma once

#include <string>
#include <string_view>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// Pieces of text and of content that screens share.
namespace sorvane::ResultText {

/// "p < .001" or "p = .045"; "p = --" where it could not be had.
std::string pSentence(double p);
/// The p-value of a table cell; "--" where it could not be had.
std::string pCell(double p);
/// The same, followed by its stars.
std::string starredPCell(double p);
/// The p-value of a tile, without the zero that a table drops by itself.
std::string pTile(double p);
/// The tile of a p-value, with the words of its significance.
Tile pValueTile(double p);
/// An odds, rate or hazard ratio of two decimals at least: "> 99999" beyond any use, "< 0.001"
/// rather than a zero.
std::string ratio(double value, int decimals);
/// The same in a sentence: "HR = 1.25", "HR < 0.01".
std::string ratioSentence(std::string_view symbol, double value, int decimals);
/// A count in plain digits.
std::string count(std::int64_t value);
/// Degrees of freedom: whole ones without decimals, others with two.
std::string degreesOfFreedom(double df);
/// Names as running text: "a", "a and b", "a, b, and c".
std::string listed(const std::vector<std::string>& names);
/// Sentences as running text; empty ones leave no blank behind.
std::string running(const std::vector<std::string>& sentences);
/// "statistically significant" or "not statistically significant", at p < .05; "not testable" where
/// there is no p-value.
std::string_view significanceWords(double p);
/// The messages of the issues, in order.
std::vector<std::string> messages(const AnalysisReadiness& readiness);
/// The first message that blocks the analysis; empty without one.
std::string obstacle(const AnalysisReadiness& readiness);

/// What a figure in stars stands for.
inline constexpr std::string_view starLegend = "* p < .05. ** p < .01. *** p < .001.";

/// Of tests of means.
inline constexpr std::string_view notProofOfEqualMeans =
    "Do not read a non-significant result as proof of equal means; look at the interval of the "
    "difference.";

/// Adds a card for each chart.
void addCharts(ScreenContent& content, const std::vector<Chart>& charts);

/// What a gate says, as running text.
std::string sentence(const Gate& gate);

/// What a screen shows while there is no table.
Gate noDataGate();

}  // namespace sorvane::ResultText
