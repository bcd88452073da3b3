#include "SorvaneMac/State/Field.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {
namespace {

TEST(Field, TellsItsObserversOfChangesAlone) {
    FieldRegistry registry;
    Field<int> count(registry, "count", 3);
    std::vector<std::string> told;
    Subscription watching =
        registry.observe([&told](const AnyField& field) { told.push_back(field.name()); });
    count.set(3);
    EXPECT_TRUE(told.empty());
    count.set(4);
    count.edit([](int& value) { ++value; });
    EXPECT_EQ(told.size(), 2U);
    watching.reset();
    count.reset();
    EXPECT_EQ(told.size(), 2U);
    EXPECT_EQ(*count, 3);
}

TEST(Field, ReadsOfADerivedValueAreCurrentUntilOneOfThemChanges) {
    FieldRegistry registry;
    Field<int> price(registry, "price", 3);
    Field<int> amount(registry, "amount", 2);
    Field<std::string> note(registry, "note");
    int total = 0;
    const FieldReads reads = registry.recordReads([&] { total = *price * *amount; });
    EXPECT_EQ(total, 6);
    note.set("typed");
    EXPECT_TRUE(reads.areCurrent());
    amount.set(5);
    EXPECT_FALSE(reads.areCurrent());
}

TEST(Field, FollowsAColumnThatIsRenamedOrRemoved) {
    FieldRegistry registry;
    Field<VariableName> outcome(registry, "outcome", {"age"});
    Field<NameSet> predictors(registry, "predictors", {"age", "tenure"});
    Field<std::string> label(registry, "label", "age");
    registry.renameVariable("age", "years");
    EXPECT_EQ(outcome->name, "years");
    EXPECT_EQ(*predictors, (NameSet{"tenure", "years"}));
    EXPECT_EQ(*label, "age");
    registry.dropVariable("years");
    EXPECT_TRUE(outcome->isBlank());
    EXPECT_EQ(*predictors, NameSet{"tenure"});
}

TEST(Field, IsSetByNameFromJson) {
    FieldRegistry registry;
    Field<NameSet> predictors(registry, "predictors");
    Field<double> share(registry, "share", 0.8, ResetRule::kept);
    registry.find("predictors")->setJson(Json::parse(R"(["b","a"])"));
    registry.find("share")->setJson(0.5);
    EXPECT_EQ(*predictors, (NameSet{"a", "b"}));
    EXPECT_THROW(registry.find("share")->setJson("much"), RecordJsonError);
    EXPECT_EQ(*share, 0.5);
    registry.resetWithDataset();
    EXPECT_TRUE(predictors.isAtStart());
    EXPECT_EQ(*share, 0.5);
    EXPECT_EQ(registry.find("other"), nullptr);
}

}  // namespace
}  // namespace sorvane
