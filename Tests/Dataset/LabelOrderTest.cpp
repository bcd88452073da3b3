#include "SorvaneCore/Dataset/LabelOrder.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

std::vector<std::string> ordered(const std::vector<std::string>& labels) {
    std::vector<std::string> result;
    for (const std::size_t at : LabelOrder::caseInsensitive(labels)) {
        result.push_back(labels[at]);
    }
    return result;
}

TEST(LabelOrder, StandsAsInADictionary) {
    using Labels = std::vector<std::string>;
    const struct {
        int line;
        Labels labels;
        Labels ordered;
    } cases[] = {
        {__LINE__, {}, {}},
        {__LINE__, {"b", "A", "a", "B"}, {"A", "a", "b", "B"}},
        {__LINE__, {"a", "A"}, {"a", "A"}},
        {__LINE__, {"zeta", "Äpfel", "Apfel", "apfel"}, {"Apfel", "apfel", "Äpfel", "zeta"}},
        {__LINE__, {"côte", "coté", "cote"}, {"cote", "coté", "côte"}},
        {__LINE__, {"Ж", "z", "1", " x", "10", "2"}, {" x", "1", "10", "2", "z", "Ж"}},
        {__LINE__, {"b", "", "a"}, {"", "a", "b"}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(ordered(each.labels), each.ordered) << each.line;
    }
}

}  // namespace
}  // namespace sorvane
