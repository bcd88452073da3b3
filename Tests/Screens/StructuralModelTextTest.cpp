#include "SorvaneMac/Screens/Structural/StructuralModelText.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace sorvane {
namespace {

TEST(StructuralModelText, QuotesWhatTheSyntaxCouldNotTake) {
    using StructuralModelText::quotedName;
    for (const std::string name : {"x1", "x_1", "größe", "Ж"}) {
        EXPECT_EQ(quotedName(name), name);
    }
    for (const std::string name : {"_x", "1x", "a b", "a-b", "a.b", ""}) {
        EXPECT_EQ(quotedName(name), "`" + name + "`");
    }
}

TEST(StructuralModelText, WritesModelsOfTheFirstColumns) {
    using enum StructuralModelText::Template;
    using StructuralModelText::filled;
    const std::vector<std::string> names = {"a", "b c", "d", "e", "f", "g"};
    EXPECT_EQ(StructuralModelText::starter({"a", "b"}), "factor =~ item1 + item2 + item3");
    EXPECT_EQ(filled(oneFactor, names), "# One-factor CFA\nfactor =~ a + `b c` + d");
    EXPECT_EQ(filled(twoFactors, {"a", "b", "c"}),
              "# Multi-factor CFA\nfactorA =~ a + b + c\nfactorB =~ item4 + item5 + item6");
    EXPECT_EQ(filled(mediation, names), "# a -> `b c` -> d\n`b c` ~ a\nd ~ `b c` + a");
}

TEST(StructuralModelText, InsertsANameWhereOneIsAwaited) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", "x"},
        {"f =~", "f =~ x"},
        {"f =~ ", "f =~ x"},
        {"y ~", "y ~ x"},
        {"f =~ a", "f =~ a + x"},
        {"f =~ a ", "f =~ a + x"},
        {"f =~ a +", "f =~ a + x"},
        {"f =~ a\n", "f =~ a\nx"},
        {"f =~ a # note", "f =~ a # note\nx"},
        {"# a; f =~ b", "# a; f =~ b + x"},
        {"f =~ `a#b`", "f =~ `a#b` + x"},
        {"f =~ 1*", "f =~ 1*x"},
        {"f =~ a + 0.5* ", "f =~ a + 0.5*x"}};
    for (const auto& [before, after] : cases) {
        EXPECT_EQ(StructuralModelText::withName(before, "x"), after);
    }
}

TEST(StructuralModelText, FollowsAColumnThatIsRenamed) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"f =~ x + x1 + 0.5*x", "f =~ `a b` + x1 + 0.5*`a b`"},
        {"x~`x` # x; y ~~ x\nx.y ~ `x y`", "`a b`~`a b` # x; y ~~ `a b`\nx.y ~ `x y`"},
        {"f =~ x +", "f =~ `a b` +"},
        {"f =~ `x", "f =~ `x"},
        {"x =~ a + b\ny ~ x", "x =~ a + b\ny ~ x"},
        {"`a b` =~ x + y", "`a b` =~ x + y"},
        {"größe ~ x # `x", "größe ~ `a b` # `x"}};
    for (const auto& [before, after] : cases) {
        EXPECT_EQ(StructuralModelText::withRenamed(before, "x", "a b"), after);
    }
    EXPECT_EQ(StructuralModelText::withRenamed("f =~ `a b` + c", "a b", "x"), "f =~ x + c");
}

}  // namespace
}  // namespace sorvane
