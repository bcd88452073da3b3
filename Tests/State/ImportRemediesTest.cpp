#include <filesystem>

#include <gtest/gtest.h>

#include "SorvaneMac/State/StudioState.h"

namespace sorvane {
namespace {

const std::filesystem::path files = SORVANE_SOURCE_DIR "/Tests/Import/Files";

TEST(ImportRemedies, ImplausibleValuesGoMissingAndCanBeTakenBack) {
    StudioState state{SORVANE_SOURCE_DIR "/Resources"};
    EXPECT_FALSE(state.setImplausibleToMissing());
    EXPECT_EQ(state.cleaning.clMessage.get(),
              "The import warned of no column with implausible values.");
    state.importData(files / "made_raw_uncompressed_sysmis.sav");
    const ImportedDataset before = state.dataset();
    ASSERT_TRUE(before.importMetadata.cautions);

    ASSERT_TRUE(state.setImplausibleToMissing());
    EXPECT_FALSE(state.dataset().importMetadata.cautions);
    EXPECT_EQ(state.dataset().importMetadata.notes, before.importMetadata.notes);
    EXPECT_EQ(state.dataset().rows.cell(0, 0), "1");
    EXPECT_EQ(state.dataset().rows.cell(1, 0), "");
    EXPECT_EQ(state.dataset().variables[0].assignedType, VariableKind::status);
    EXPECT_EQ(state.data.transformationLog->back(),
              "Set implausible values (of a magnitude above 1e300, or 2 to the power 127) to "
              "missing in A, B.");
    EXPECT_EQ(state.cleaning.clMessage.get(), "Implausible values were set to missing in A, B.");
    EXPECT_FALSE(state.setImplausibleToMissing());

    EXPECT_EQ(state.data.dataChangeUndoLabel.get(), "setting of implausible values to missing");
    ASSERT_TRUE(state.undoLastDataChange());
    EXPECT_EQ(state.dataset(), before);
}

TEST(ImportRemedies, AStataFileIsReadAgainWithItsOtherReferences) {
    const char* const notAtHand = "The Stata file of this table is not at hand. Import it first.";
    StudioState state{SORVANE_SOURCE_DIR "/Resources"};
    state.importData(files / "made_raw_labels.sav");
    EXPECT_FALSE(state.readAgainWithEightByteReferences());
    EXPECT_EQ(state.data.importError.get(), notAtHand);

    for (const char* name :
         {"made_raw_strl_realwidth_117.dta", "made_raw_strl_realwidth_119.dta"}) {
        state.importData(files / name);
        ASSERT_EQ(state.dataset().importMetadata.cautions->front().kind,
                  ImportCautionKind::otherReferenceWidth);
        ASSERT_TRUE(state.readAgainWithEightByteReferences());
        EXPECT_FALSE(state.dataset().importMetadata.cautions);
        EXPECT_EQ(state.dataset().values("after"), (std::vector<std::string>{"11", "22", "33"}));
        EXPECT_NE(state.dataset().rows.cell(0, 1), "");
        EXPECT_EQ(state.data.transformationLog.get(),
                  (std::vector<std::string>{
                      "Imported " + std::string(name) + " with 3 row(s) and 3 variable(s).",
                      "The references to long texts were read with 8 bytes."}));
        // The file is still known, so that it could be done once more.
        EXPECT_EQ(state.readingAgainLacks(), std::nullopt);
    }
    state.importPastedData("a,b\n1,2\n");
    EXPECT_EQ(state.readingAgainLacks(), notAtHand);
}

}  // namespace
}  // namespace sorvane
