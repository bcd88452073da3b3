#include "SorvaneMac/Review/ReviewInference.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <utility>
#include <vector>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Review/TextPattern.h"

namespace sorvane::ReviewInference {

namespace {

using Words = std::vector<std::string_view>;

constexpr std::string_view dash = "—";
constexpr double significance = 0.05;
/// What a bound is lowered by, so that "p < .05" reads as a value under .05.
constexpr double underBound = 1e-7;
constexpr int noTier = 4;

const std::vector<std::pair<std::string_view, Words>>& categoryWords() {
    static const std::vector<std::pair<std::string_view, Words>> table = {
        {"predictiveModel",
         {"regression", "predict", "logistic", "poisson", " glm", "r²", "r-squared", "β",
          "beta =", "odds ratio", "coefficient"}},
        {"groupDifference",
         {"anova", "t-test", "t(", "t (", "mann-whitney", "kruskal", "welch", "wilcoxon",
          "chi-square", "χ²", "χ2", " differ", "difference", "compared", "between groups",
          "post hoc", "tukey"}},
        {"relationship",
         {"correlat", "pearson", "spearman", "kendall", "associat", "relationship",
          " r =", "r ="}}};
    return table;
}

constexpr std::pair<std::string_view, std::string_view> testTypes[] = {
    {"one-way anova", "One-way ANOVA"},
    {"factorial anova", "Factorial ANOVA"},
    {"repeated measures", "Repeated-measures ANOVA"},
    {"ancova", "ANCOVA"},
    {"manova", "MANOVA"},
    {"anova", "ANOVA"},
    {"independent samples t", "Independent samples t-test"},
    {"paired", "Paired samples t-test"},
    {"t-test", "t-test"},
    {"mann-whitney", "Mann-Whitney U"},
    {"kruskal", "Kruskal-Wallis"},
    {"wilcoxon", "Wilcoxon signed-rank"},
    {"welch", "Welch's t-test"},
    {"chi-square", "Chi-square test"},
    {"χ²", "Chi-square test"},
    {"logistic", "Logistic regression"},
    {"poisson", "Poisson regression"},
    {"multiple regression", "Multiple regression"},
    {"linear regression", "Linear regression"},
    {"regression", "Regression"},
    {"pearson", "Pearson correlation"},
    {"spearman", "Spearman correlation"},
    {"kendall", "Kendall's tau"},
    {"correlat", "Correlation"},
    {"cronbach", "Reliability (Cronbach's alpha)"},
    {"omega", "Reliability (omega)"},
    {"reliability", "Reliability analysis"},
    {"frequency", "Frequency summary"},
    {"descriptive", "Descriptive summary"}};

constexpr std::pair<std::string_view, std::string_view> categoryTests[] = {
    {"groupDifference", "Group comparison"},
    {"relationship", "Relationship analysis"},
    {"predictiveModel", "Predictive model"},
    {"descriptive", "Descriptive summary"}};

constexpr std::array qualityWords = {
    std::string_view("missing"),      std::string_view("outlier"),
    std::string_view("skew"),         std::string_view("kurtos"),
    std::string_view("non-normal"),   std::string_view("not normal"),
    std::string_view("small sample"), std::string_view("small n"),
    std::string_view("underpower"),   std::string_view("low power"),
    std::string_view("unequal"),      std::string_view("variance"),
    std::string_view("unreliable"),   std::string_view("low reliability"),
    std::string_view("sparse"),       std::string_view("cell count"),
    std::string_view("violat"),       std::string_view("assumption"),
    std::string_view("biased"),       std::string_view("ceiling"),
    std::string_view("floor"),        std::string_view("multicollinear"),
    std::string_view("heterogen")};

/// Where tiers 0, 1 and 2 end.
using Thresholds = std::array<double, 3>;
constexpr Thresholds ofEta = {0.01, 0.06, 0.14};
constexpr Thresholds ofD = {0.2, 0.5, 0.8};
constexpr Thresholds ofCorrelation = {0.1, 0.3, 0.5};
constexpr Thresholds ofRSquared = {0.02, 0.13, 0.26};

struct EffectPattern {
    TextPattern pattern;
    Thresholds thresholds;
};

const std::vector<EffectPattern>& effectPatterns() {
    static const std::vector<EffectPattern> patterns = [] {
        std::vector<EffectPattern> made;
        made.push_back({TextPattern("η²p\\s*=\\s*0?\\.\\d+"), ofEta});
        made.push_back({TextPattern("η²\\s*=\\s*0?\\.\\d+"), ofEta});
        made.push_back({TextPattern("ω²\\s*=\\s*0?\\.\\d+"), ofEta});
        made.push_back({TextPattern("d\\s*=\\s*-?\\d+\\.?\\d*"), ofD});
        made.push_back({TextPattern("R²\\s*=\\s*0?\\.\\d+"), ofRSquared});
        // The squared correlation takes the bounds of the correlation, not those of R².
        made.push_back({TextPattern("r²\\s*=\\s*0?\\.\\d+"), ofCorrelation});
        made.push_back({TextPattern("V\\s*=\\s*0?\\.\\d+"), ofCorrelation});
        made.push_back({TextPattern("r\\s*=\\s*-?0?\\.\\d+"), ofCorrelation});
        return made;
    }();
    return patterns;
}

const std::vector<TextPattern>& statisticPatterns() {
    static const std::vector<TextPattern> patterns = [] {
        std::vector<TextPattern> made;
        for (const std::string_view each :
             {"F\\s*\\([^)]*\\)\\s*=\\s*-?\\d+\\.?\\d*", "t\\s*\\([^)]*\\)\\s*=\\s*-?\\d+\\.?\\d*",
              "(?:χ²|χ2|χ\\^2)\\s*\\([^)]*\\)\\s*=\\s*-?\\d+\\.?\\d*", "z\\s*=\\s*-?\\d+\\.?\\d*",
              "U\\s*=\\s*-?\\d+\\.?\\d*", "H\\s*=\\s*-?\\d+\\.?\\d*",
              "β\\s*=\\s*-?\\.?\\d+\\.?\\d*", "\\br\\s*=\\s*-?\\.?\\d+\\.?\\d*"}) {
            made.emplace_back(each);
        }
        return made;
    }();
    return patterns;
}

bool holdsAny(std::string_view text, std::span<const std::string_view> words) {
    return std::ranges::any_of(
        words, [text](std::string_view word) { return text.find(word) != std::string_view::npos; });
}

/// The number that the ASCII digits of a text spell, with those of the marks that stand in it.
std::optional<double> numberIn(std::string_view text, std::string_view marks) {
    std::string kept;
    std::ranges::copy_if(text, std::back_inserter(kept), [marks](char each) {
        return (each >= '0' && each <= '9') || marks.find(each) != std::string_view::npos;
    });
    return NumberText::parse(kept);
}

std::string withoutDoubleBlanks(std::string text) {
    for (std::size_t at = text.find("  "); at != std::string::npos; at = text.find("  ", at + 1)) {
        text.erase(at, 1);
    }
    return text;
}

std::string_view tierLabel(int tier) {
    constexpr std::array<std::string_view, 4> labels = {"Negligible", "Small", "Moderate", "Large"};
    return tier < noTier ? labels[static_cast<std::size_t>(tier)] : dash;
}

int tierOf(double size, const Thresholds& thresholds) {
    return static_cast<int>(
        std::ranges::count_if(thresholds, [size](double bound) { return !(size < bound); }));
}

std::string orDash(std::string text) {
    return text.empty() ? std::string(dash) : text;
}

std::string evidence(std::string_view category,
                     const std::optional<double>& p,
                     int tier,
                     const std::optional<std::string>& caution) {
    if (category == "descriptive") {
        return cautionIsQualityConcern(caution) ? "caution" : "strong";
    }
    if (!p) {
        return "moderate";
    }
    if (*p >= significance) {
        return "caution";
    }
    return tier == 2 || tier == 3 ? "strong" : "moderate";
}

}  // namespace

std::string inferCategory(std::string_view text) {
    const std::string lower = UnicodeText::lowerCased(text);
    for (const auto& [category, words] : categoryWords()) {
        if (holdsAny(lower, words)) {
            return std::string(category);
        }
    }
    return "descriptive";
}

std::string inferTestType(std::string_view text, std::string_view category) {
    const std::string lower = UnicodeText::lowerCased(text);
    for (const auto& [word, test] : testTypes) {
        if (lower.find(word) != std::string::npos) {
            return std::string(test);
        }
    }
    const auto* const found = std::ranges::find(
        categoryTests, category, &std::pair<std::string_view, std::string_view>::first);
    return found == std::end(categoryTests) ? "Descriptive summary" : std::string(found->second);
}

std::string extractStatistic(std::string_view text) {
    for (const TextPattern& pattern : statisticPatterns()) {
        if (std::optional<std::string> match = pattern.firstMatch(text)) {
            return *std::move(match);
        }
    }
    return "";
}

PValue extractPValue(std::string_view text) {
    static const TextPattern fraction("p[s]?\\s*[<=>]\\s*0?\\.\\d+");
    static const TextPattern any("p[s]?\\s*[<=>]\\s*\\d+\\.?\\d*");
    std::optional<std::string> match = fraction.firstMatch(text);
    if (!match) {
        match = any.firstMatch(text);
    }
    if (!match) {
        return {};
    }
    PValue found{.text = withoutDoubleBlanks(*match), .number = numberIn(*match, ".")};
    if (found.number && found.text.find('<') != std::string::npos) {
        found.number = std::max(0.0, *found.number - underBound);
    }
    return found;
}

std::string extractCI(std::string_view text) {
    static const TextPattern interval(
        "95%\\s*CI[:\\s]*\\[?\\s*-?\\d+\\.?\\d*\\s*[,–-]\\s*-?\\d+\\.?\\d*\\s*\\]?");
    return interval.firstMatch(text).value_or("");
}

EffectSize extractEffectSize(std::string_view text) {
    for (const EffectPattern& each : effectPatterns()) {
        if (const std::optional<std::string> match = each.pattern.firstMatch(text)) {
            const double size = std::abs(numberIn(*match, ".-").value_or(0.0));
            const int tier = tierOf(size, each.thresholds);
            return {.text = *match, .label = std::string(tierLabel(tier)), .tier = tier};
        }
    }
    return {.label = std::string(dash), .tier = noTier};
}

bool cautionIsQualityConcern(const std::optional<std::string>& caution) {
    return caution && holdsAny(UnicodeText::lowerCased(std::string_view(*caution)), qualityWords);
}

Parsed parse(std::string_view title,
             std::string_view apaSummary,
             const std::optional<std::string>& caution) {
    const std::string combined = std::string(title) + " . " + std::string(apaSummary);
    const PValue p = extractPValue(apaSummary);
    const EffectSize effect = extractEffectSize(apaSummary);
    Parsed parsed;
    parsed.category = inferCategory(combined);
    parsed.testType = inferTestType(combined, parsed.category);
    parsed.statistic = orDash(extractStatistic(apaSummary));
    parsed.pValue = orDash(p.text);
    parsed.effectSize = orDash(effect.text);
    parsed.effectLabel = effect.label;
    parsed.confidenceInterval = orDash(extractCI(apaSummary));
    parsed.evidence = evidence(parsed.category, p.number, effect.tier, caution);
    return parsed;
}

}  // namespace sorvane::ReviewInference
