#include "SorvaneCore/Import/VariableClassifier.h"

#include <gtest/gtest.h>

#include "SorvaneCore/Import/NameTokens.h"

namespace sorvane {
namespace {

using Texts = std::vector<std::string>;
using enum VariableKind;

Texts numbers(int first, int last) {
    Texts result;
    for (int i = first; i <= last; ++i) {
        result.push_back(std::to_string(i));
    }
    return result;
}

Texts repeated(const Texts& cells, int times) {
    Texts result;
    for (int i = 0; i < times; ++i) {
        result.insert(result.end(), cells.begin(), cells.end());
    }
    return result;
}

TEST(NameTokens, SplitsAtCapitalsAndAtWhatIsNoLetterOrDigit) {
    EXPECT_EQ(tokenize("SatisfactionScore_2"), (NameTokens{"satisfaction", "score", "2"}));
    EXPECT_EQ(tokenize("Q1a"), NameTokens{"q1a"});
    EXPECT_EQ(tokenize("item2Total--ID (raw)"), (NameTokens{"item2", "total", "id", "raw"}));
    EXPECT_EQ(tokenize("\xC3\x84lterEs\xC3\x9F\xE2\x82\xAC"
                       "Age"),
              (NameTokens{"\xC3\xA4lter", "es\xC3\x9F", "age"}));
}

struct RoleCase {
    int line;
    std::string name;
    Texts cells;
    VariableKind kind;
    std::string warning;
};

const std::string textWarning =
    "Text response fields are excluded from reliability unless recoded as items.";
const std::string freeFormWarning =
    "Free-form fields are excluded from reliability unless recoded as items.";
const std::string likertWarning =
    "Likert-like numeric range detected; confirm the item belongs to a construct.";
const std::string fieldWarning =
    "Numeric field was not named as an outcome or item; assign a research role before analysis.";
const std::string codesWarning =
    "Numeric category codes detected; assign Grouping, Outcome, or Item before analysis.";

TEST(VariableClassifier, TakesTheFirstRuleThatFires) {
    const Texts oneToFive = numbers(1, 5);
    const Texts words = {"red apple", "green pear", "blue plum", "black cherry"};
    const std::string e89 = std::string(88, 'x') + "\xC3\xA9";
    const std::vector<RoleCase> cases = {
        {__LINE__, "ignore_q1", oneToFive, exclude,
         "Ignored fields are excluded until manually assigned another role."},
        {__LINE__, "Unused id", oneToFive, exclude,
         "Ignored fields are excluded until manually assigned another role."},
        {__LINE__, "ResponseTime", words, administrative,
         "Administrative fields are excluded from reliability evidence."},
        {__LINE__, "case_ID", oneToFive, administrative,
         "Administrative fields are excluded from reliability evidence."},
        {__LINE__, "comment", words, textResponse, textWarning},
        {__LINE__, "comment", {"1", "2", "3"}, status, fieldWarning},
        {__LINE__, "Age", oneToFive, demographicBackground,
         "Background variables are not psychometric items by default."},
        {__LINE__, "Score", oneToFive, outcome, ""},
        {__LINE__,
         "group score",
         {"a", "b", "a"},
         grouping,
         "Grouping/status variables are excluded from reliability unless reclassified."},
        {__LINE__, "free", {e89, "a", "b", "c"}, textResponse, freeFormWarning},
        {__LINE__, "free", {e89 + "y", "a", "b", "c"}, textResponse, textWarning},
        {__LINE__, "free", {std::string(45, 'x'), std::string(45, 'y')}, textResponse, textWarning},
        {__LINE__, "free", {"a", "b"}, grouping, ""},
        {__LINE__, "free", words, textResponse, freeFormWarning},
        {__LINE__, "empty", {"", "NA"}, grouping, ""},
        {__LINE__, "Q1", oneToFive, psychometricItem, likertWarning},
        {__LINE__, "anx-3b", {"0", "10"}, psychometricItem, likertWarning},
        {__LINE__, "anxious3", oneToFive, status, fieldWarning},
        {__LINE__, "q1ab", oneToFive, status, fieldWarning},
        {__LINE__, "item3", numbers(0, 11), status, fieldWarning},
        {__LINE__, "item3", numbers(-1, 9), psychometricItem, likertWarning},
        {__LINE__, "q1", {"1", "2.5", "5"}, psychometricItem, likertWarning},
        {__LINE__, "q1", {"1.5", "2", "5"}, status, fieldWarning},
        {__LINE__, "x", repeated({"1", "2"}, 3), status, codesWarning},
        {__LINE__, "x", {"1", "2", "3", "4", "5", "a"}, textResponse, freeFormWarning},
        {__LINE__, "x", {"1", "2", "3", "4", "5", "6", "a"}, status, fieldWarning},
        // 59 values allow 19 categories, 60 allow 20.
        {__LINE__, "x", numbers(1, 20), status, fieldWarning},
    };
    for (const RoleCase& each : cases) {
        SCOPED_TRACE(each.line);
        const DataVariable variable = VariableClassifier().classify(each.name, each.cells);
        EXPECT_EQ(displayName(variable.inferredType), displayName(each.kind));
        EXPECT_EQ(variable.warnings, each.warning.empty() ? Texts() : Texts{each.warning});
        EXPECT_EQ(variable.assignedType, variable.inferredType);
        EXPECT_EQ(variable.includeInReliability, each.kind == psychometricItem);
        EXPECT_EQ(variable.includeInDescriptives,
                  each.kind != administrative && each.kind != exclude);
    }
}

TEST(VariableClassifier, LimitsCategoriesByTheNumberOfValues) {
    const auto kindOf = [](std::size_t count, std::size_t categories) {
        Texts cells;
        for (std::size_t i = 0; i < count; ++i) {
            cells.push_back("c" + std::to_string(i % categories));
        }
        return VariableClassifier().classify("x", cells).inferredType;
    };
    for (const auto& [count, limit] :
         {std::pair<std::size_t, std::size_t>{5, 2}, {6, 2}, {59, 19}, {60, 20}, {300, 20}}) {
        EXPECT_EQ(kindOf(count, limit), grouping) << count;
        EXPECT_EQ(kindOf(count, limit + 1), textResponse) << count;
    }
}

TEST(VariableClassifier, CountsAndSummarises) {
    const DataVariable variable = VariableClassifier().classify(
        "x", Texts{"NA", " A", "a ", "\xC3\x84", "\xC3\xA4", "1", "1.0", "", "3e0"});
    EXPECT_EQ(variable.missingCount, 2);
    EXPECT_EQ(variable.nonMissingCount, 7);
    EXPECT_EQ(variable.uniqueCount, 5);
    EXPECT_EQ(variable.sampleValues, (Texts{" A", "a ", "\xC3\x84", "\xC3\xA4"}));
    EXPECT_EQ(variable.numericSummary,
              (NumericSummary{.minimum = 1.0, .maximum = 3.0, .mean = 5.0 / 3.0}));
    EXPECT_FALSE(variable.scaleRange);
    EXPECT_EQ(VariableClassifier().classify("x", numbers(1, 4)).scaleRange,
              (ScaleRange{.minimum = 1.0, .maximum = 4.0}));
}

}  // namespace
}  // namespace sorvane
