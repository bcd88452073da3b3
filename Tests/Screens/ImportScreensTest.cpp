#include <algorithm>

#include "SorvaneMac/Screens/DataPreviewScreen.h"
#include "SorvaneMac/Screens/ImportDataScreen.h"
#include "SorvaneMac/Screens/InstrumentMapScreen.h"
#include "SorvaneMac/Screens/VariableTypesScreen.h"
#include "Tests/Screens/ScreenWorkplace.h"

namespace sorvane {
namespace {

class ImportScreens : public testing::Test {
protected:
    void import(const std::string& name) {
        work_.state.importData(std::filesystem::path(SORVANE_SOURCE_DIR "/Tests/Import/Files") /
                               name);
        ASSERT_EQ(work_.state.data.importError.get(), std::nullopt);
    }
    template <typename S>
    S& screen(StudioScreen id) {
        return static_cast<S&>(work_.screens.at(id));
    }
    const Card* card(StudioScreen id, const std::string& title) {
        const std::vector<Card>& cards = work_.screens.content(id).cards;
        const auto found = std::ranges::find(cards, title, &Card::title);
        return found == cards.end() ? nullptr : &*found;
    }
    /// Whether the button of a screen's caution is there; presses it.
    bool press(StudioScreen id, const std::string& label) {
        const Card* cautions = card(id, "Before you analyze");
        for (std::size_t i = 0; cautions && i < cautions->links.size(); ++i) {
            if (cautions->links[i].label == label) {
                work_.screens.follow(ScreenLink(cautions->links[i]));
                return true;
            }
        }
        return false;
    }

    ScreenWorkplace work_;
};

TEST_F(ImportScreens, LabelsOfAFileAreSeenAtOnce) {
    import("pyreadstat_simple_alltypes.sav");
    const std::string missing = "User-defined missing values (7, 8, 99) were imported as missing.";

    const auto& map = screen<InstrumentMapScreen>(StudioScreen::instrumentMap);
    EXPECT_EQ(work_.state.selection.get(), StudioScreen::instrumentMap);
    EXPECT_TRUE(map.hasLabels());
    EXPECT_EQ(map.rows()[0].label, "Numeric variable with value labels");
    EXPECT_TRUE(map.rows()[0].remarks.ends_with(missing));
    ASSERT_TRUE(card(StudioScreen::instrumentMap, "Notes on the file"));
    EXPECT_FALSE(card(StudioScreen::instrumentMap, "Before you analyze"));

    const auto& types = screen<VariableTypesScreen>(StudioScreen::variableTypes);
    EXPECT_EQ(types.rows()[0].label, "Numeric variable with value labels");
    EXPECT_EQ(types.rows()[0].samples, "1 = red, 2 = green, 3 = blue");
    EXPECT_TRUE(types.rows()[0].warnings.ends_with(missing));

    auto& preview = screen<DataPreviewScreen>(StudioScreen::dataPreview);
    EXPECT_EQ(preview.columnHeads()[0].label, "Numeric variable with value labels");
    EXPECT_TRUE(preview.columnHeads()[0].details.starts_with(
        "Numeric variable with value labels\n1 = red\n2 = green\n3 = blue\n"));
    EXPECT_TRUE(preview.hasValueLabels());
    preview.showsValueLabels.set(true);
    EXPECT_EQ(preview.cells().text(0, 0), "red");

    const Card* variables = card(StudioScreen::importData, "Labels and remarks");
    ASSERT_TRUE(variables);
    EXPECT_EQ(variables->tables[0].rows[0][2], "1 = red, 2 = green, 3 = blue");
    EXPECT_TRUE(variables->tables[0].rows[0][3].ends_with(missing));
    EXPECT_EQ(card(StudioScreen::importData, "Notes on the file")->paragraphs,
              *work_.state.dataset().importMetadata.notes);
}

TEST_F(ImportScreens, LabelledValuesStandInTheOrderOfTheirNumbers) {
    DataVariable variable;
    variable.valueLabels = {{"10", "ten"}, {"-1", "none"}, {"2", "two"}, {"x", "other"}};
    EXPECT_EQ(DatasetText::labelledValues(variable),
              (std::vector<std::string>{"-1 = none", "2 = two", "10 = ten", "x = other"}));
}

TEST_F(ImportScreens, CautionsStandWhereOneLooksAndTheirButtonsHelp) {
    using enum StudioScreen;
    for (const StudioScreen place : {instrumentMap, variableTypes, importData}) {
        import("made_raw_uncompressed_sysmis.sav");
        EXPECT_TRUE(press(place, "Set implausible values to missing"));
        EXPECT_FALSE(work_.state.dataset().importMetadata.cautions);
        EXPECT_EQ(work_.state.selection.get(), importData);
        EXPECT_EQ(work_.value("importRemedy"), R"("none")");

        import("made_raw_strl_realwidth_117.dta");
        EXPECT_TRUE(press(place, "Read again with 8-byte references"));
        EXPECT_FALSE(work_.state.dataset().importMetadata.cautions);
        EXPECT_EQ(work_.state.selection.get(), instrumentMap);
    }
    work_.state.importPastedData("a,b\n1,2\n");
    work_.set({{"importRemedy", R"("setImplausibleToMissing")"}});
    EXPECT_EQ(work_.screens.at(importData).run(),
              "The import warned of no column with implausible values.");
    EXPECT_EQ(work_.screens.at(importData).run(), std::nullopt);
}

}  // namespace
}  // namespace sorvane
