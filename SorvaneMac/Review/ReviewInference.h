#pragma once

#include <boost/describe/class.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace sorvane {

/// Hints read from the text of a finding, without knowledge of the analysis behind it.
///
/// Patterns and lists of words decide, the first that fits; whatever does not occur in the text is
/// the dash "—".
namespace ReviewInference {

struct Parsed {
    std::string category{};
    std::string testType{};
    std::string statistic{};
    std::string pValue{};
    std::string effectSize{};
    std::string effectLabel{};
    std::string confidenceInterval{};
    std::string evidence{};

    bool operator==(const Parsed&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    Parsed,
    (),
    (category, testType, statistic, pValue, effectSize, effectLabel, confidenceInterval, evidence))

/// Reads category and test type from the title and the sentence, all else from the sentence alone.
///
/// Returns    `evidence` is "strong", "moderate" or "caution"
/// Cost       linear in the text but for text made to be slow, which is given up
Parsed parse(std::string_view title,
             std::string_view apaSummary,
             const std::optional<std::string>& caution);

/// "predictiveModel", "groupDifference", "relationship" or "descriptive".
std::string inferCategory(std::string_view text);
/// The test that the text names, else what the category comes to.
std::string inferTestType(std::string_view text, std::string_view category);
/// The first test statistic, as it stands in the text; empty without one.
std::string extractStatistic(std::string_view text);

struct PValue {
    std::string text{};
    /// A little under the bound where the text gives one ("p < .05").
    std::optional<double> number{};

    bool operator==(const PValue&) const = default;
};
BOOST_DESCRIBE_STRUCT(PValue, (), (text, number))

PValue extractPValue(std::string_view text);
/// A 95% confidence interval, as it stands in the text; empty without one.
std::string extractCI(std::string_view text);

struct EffectSize {
    std::string text{};
    std::string label{};
    /// 0 for negligible to 3 for large; 4 where the text names no effect size.
    int tier = 4;

    bool operator==(const EffectSize&) const = default;
};
BOOST_DESCRIBE_STRUCT(EffectSize, (), (text, label, tier))

EffectSize extractEffectSize(std::string_view text);
/// Whether a finding's caution speaks of the quality of data or model.
bool cautionIsQualityConcern(const std::optional<std::string>& caution);

}  // namespace ReviewInference

}  // namespace sorvane
