#include "Tests/Screens/ScreenWorkplace.h"

namespace sorvane {
namespace {

class DataQuality : public testing::Test {
protected:
    const ScreenContent& content() { return work_.screens.content(StudioScreen::dataQuality); }
    const Card& card(const std::string& title) {
        for (const Card& each : content().cards) {
            if (each.title == title) {
                return each;
            }
        }
        throw std::out_of_range(title);
    }

    ScreenWorkplace work_;
};

TEST_F(DataQuality, ShowsPatternsAndTheVerdict) {
    work_.state.importPastedData("x,y,z\n1,2,1\n2,1,4\n3,,2\n4,5,7\n,3,3\n5,6,2\n2,4,5\n3,1,9\n");
    work_.screens.appear(StudioScreen::dataQuality);
    const Card& missing = card("Missing-data diagnostics");
    const ReportTable& patterns = missing.tables[1];
    EXPECT_EQ(patterns.headers, (std::vector<std::string>{"Rows", "Percent", "x", "y"}));
    EXPECT_EQ(patterns.rows[0], (std::vector<std::string>{"6", "75.0%", "✓", "✓"}));
    EXPECT_EQ(patterns.rows[1], (std::vector<std::string>{"1", "12.5%", "✓", "—"}));
    EXPECT_TRUE(patterns.note->starts_with("✓ present · — missing"));
    EXPECT_EQ(missing.evidence[0].title, "Missingness looks completely random");
    EXPECT_NE(missing.evidence[0].detail.find(" Little's MCAR: chi-square = "), std::string::npos);
    EXPECT_EQ(content().findings.size(), 1U);
}

TEST_F(DataQuality, SaysWhereNothingIsMissing) {
    work_.state.importPastedData("x,y\n1,2\n2,1\n1,2\n");
    EXPECT_EQ(card("Missing-data diagnostics").evidence[0].detail,
              "Every numeric field is complete.");
    EXPECT_EQ(card("Duplicate rows").tables[0].rows[0],
              (std::vector<std::string>{"1", "2", "1, 3"}));
}

TEST_F(DataQuality, ComparesGroupsAndThePopulation) {
    std::string table = "sex,x\n";
    for (int i = 0; i < 20; ++i) {
        table += i < 12 ? "f,1\n" : i == 12 ? "m,\n" : "m,2\n";
    }
    work_.state.importPastedData(table);
    work_.set({{"clGroup", R"("sex")"},
               {"clCompositionVar", R"("sex")"},
               {"clBenchmarks", R"({"f":"50"})"}});
    EXPECT_EQ(card("Missing values by sex").evidence[0].title, "Groups differ in what is missing");
    EXPECT_EQ(card("Sample composition").cautions[0], "Enter a benchmark above 0 for \"m\".");
    work_.set({{"clBenchmarks", R"({"f":"50","m":" 50 ","other":"9"})"}});
    EXPECT_EQ(card("Sample composition").tables[0].rows[0],
              (std::vector<std::string>{"f", "12", "60.0", "50.0", "10.0"}));
    EXPECT_EQ(work_.result(StudioScreen::dataQuality, "/composition/statistic"), "0.8");
}

}  // namespace
}  // namespace sorvane
