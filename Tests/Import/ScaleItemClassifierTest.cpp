#include "SorvaneCore/Import/ScaleItemClassifier.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using Texts = std::vector<std::string>;
using Category = ScaleItemClassification::Category;

struct ScoreCase {
    int line;
    std::string name;
    Texts cells;
    double probability;
    Category category;
    Texts reasons;
};

ScaleItemClassification classified(const std::string& name,
                                   const Texts& cells,
                                   const std::string& question = "") {
    const std::vector<TextTable::Column> columns = {TextColumn::of(cells)};
    return ScaleItemClassifier::classify(Texts{name}, columns, {{name, question}}).front();
}

Texts repeated(const Texts& cells, int times) {
    Texts result;
    for (int i = 0; i < times; ++i) {
        result.insert(result.end(), cells.begin(), cells.end());
    }
    return result;
}

TEST(ScaleItemClassifier, WeighsNameRangeAndValues) {
    const Texts likert = repeated({"1", "2", "3", "4", "5"}, 4);
    const std::string unique = "Mostly unique values (looks like an ID)";
    const std::string dates = "Values look like dates / timestamps";
    const std::string range = "Numeric range looks demographic / count, not a scale";
    const std::string boolean = "Boolean / yes-no values";
    const std::vector<ScoreCase> cases = {
        {__LINE__,
         "I feel safe",
         likert,
         1.0,
         Category::likelyScale,
         {"Name contains 'feel'", "Bounded 1-5 Likert range"}},
        {__LINE__, "v", likert, 0.87, Category::likelyScale, {"Bounded 1-5 Likert range"}},
        {__LINE__,
         "v",
         repeated({"a", "b", "c"}, 4),
         0.55,
         Category::unclear,
         {"No strong scale or informational signals"}},
        // An informational word overrules a scale word, and the first of the list is told.
        {__LINE__,
         "Experience rating year",
         likert,
         0.57,
         Category::unclear,
         {"Name contains 'year' (demographic)", "Bounded 1-5 Likert range"}},
        {__LINE__,
         "First Name",
         {"Ann", "Bob", "Cy", "Di"},
         0.0,
         Category::likelyIDMetadata,
         {"Name contains 'name' (ID / metadata)", unique}},
        // Lower-cased before it is split, "AgeGroup" is one word.
        {__LINE__, "AgeGroup", likert, 0.87, Category::likelyScale, {"Bounded 1-5 Likert range"}},
        {__LINE__,
         "v",
         {"a@b", "c@d", "", "a@b"},
         0.2,
         Category::likelyIDMetadata,
         {"Values look like emails"}},
        {__LINE__,
         "v",
         {"2024-01-02", "2024-01-02", "2024-01-02", "2024-01-02", "x"},
         0.25,
         Category::likelyIDMetadata,
         {dates}},
        // A decimal begins like a date.
        {__LINE__, "v", {"12.5", "12.5", "1.5"}, 0.03, Category::likelyIDMetadata, {dates, range}},
        {__LINE__,
         "v",
         {"one two three four five"},
         0.0,
         Category::likelyInformational,
         {"Long free-text values", "Single distinct value"}},
        {__LINE__,
         "v",
         repeated({"1", "11"}, 5),
         0.55,
         Category::unclear,
         {"No strong scale or informational signals"}},
        {__LINE__, "v", repeated({"1", "13"}, 5), 0.33, Category::likelyInformational, {range}},
        {__LINE__, "v", repeated({"yes", "No"}, 5), 0.37, Category::likelyInformational, {boolean}},
        {__LINE__, "v", {"yes"}, 0.32, Category::likelyInformational, {boolean}},
        {__LINE__, "v", {}, 0.3, Category::likelyInformational, {"Single distinct value"}},
        // Missing to the dataset, values here: no Likert range with them.
        {__LINE__,
         "v",
         repeated({"1", "5", "no response"}, 4),
         0.55,
         Category::unclear,
         {"No strong scale or informational signals"}},
        {__LINE__,
         "v",
         repeated({"1", "5", "nan"}, 4),
         0.33,
         Category::likelyInformational,
         {range}},
        {__LINE__,
         "v",
         repeated({"1", "5", "NA", "-"}, 4),
         0.87,
         Category::likelyScale,
         {"Bounded 1-5 Likert range"}},
    };
    for (const ScoreCase& each : cases) {
        SCOPED_TRACE(each.line);
        const ScaleItemClassification result = classified(each.name, each.cells);
        EXPECT_DOUBLE_EQ(result.scaleProbability, each.probability);
        EXPECT_EQ(static_cast<int>(result.category), static_cast<int>(each.category));
        EXPECT_EQ(result.reasons, each.reasons);
        EXPECT_EQ(result.autoSelectAsScale, each.category == Category::likelyScale);
    }
}

TEST(ScaleItemClassifier, ReadsTheQuestionAndTheNeighbors) {
    EXPECT_EQ(classified("v1", repeated({"a", "b"}, 5), "How self-efficacy matters").reasons,
              Texts{"Name contains 'self-efficacy'"});
    const auto likert = TextColumn::of(repeated({"1", "5"}, 5));
    const auto other = TextColumn::of(repeated({"1", "7"}, 5));
    const std::vector<TextTable::Column> columns = {likert, likert, other};
    const auto results = ScaleItemClassifier::classify(Texts{"x", "y", "z", "beyond"}, columns, {});
    ASSERT_EQ(results.size(), 4U);
    const std::string shared = "Shares Likert range with neighbor";
    EXPECT_EQ(results[0].reasons.back(), shared);
    EXPECT_EQ(results[1].reasons.back(), shared);
    EXPECT_NE(results[2].reasons.back(), shared);
    EXPECT_EQ(results[3].reasons, Texts{"Single distinct value"});
}

TEST(ScaleItemClassifier, KeepsFourReasons) {
    const auto result =
        classified("email", {"1.5@ a b c d", "2.5@ a b c d", "3.5@ a b c d", "4.5@ a b c d"});
    EXPECT_EQ(result.reasons, (Texts{"Name contains 'email' (ID / metadata)",
                                     "Mostly unique values (looks like an ID)",
                                     "Values look like emails", "Long free-text values"}));
}

}  // namespace
}  // namespace sorvane
