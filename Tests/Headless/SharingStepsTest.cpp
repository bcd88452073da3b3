#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "SorvaneMac/Headless/StudioScript.h"
#include "Tests/Drafting/FakeGenerator.h"

namespace sorvane {
namespace {

/// Passes all on to the generator that a test holds.
class Lent final : public TextGenerator {
public:
    explicit Lent(FakeGenerator& lender) : lender_(lender) {}
    std::optional<std::string> unavailableReason() const override {
        return lender_.unavailableReason();
    }
    std::unique_ptr<DraftRun> start(const DraftRequest& request, DraftListener listener) override {
        return lender_.start(request, std::move(listener));
    }

private:
    FakeGenerator& lender_;
};

/// A script in a workspace, whose waiting is the model's turn to answer.
class SharingSteps : public testing::Test {
protected:
    SharingSteps() {
        std::filesystem::create_directories(folder_);
        perform(R"({"paste": "site,score\nnorth,1\nsouth,2\nnorth,4\n"})");
        perform(R"({"stage": "descriptives"})");
    }
    ~SharingSteps() override { std::filesystem::remove_all(folder_); }

    StepOutcome perform(const std::string& step) { return script_.perform(Json::parse(step)); }
    Json read(const std::string& name) const {
        std::ifstream stream(folder_ / name);
        return Json::parse(stream);
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / Uuid::fresh().text();
    FakeGenerator model_;
    std::string answer_ = "Plain words.";
    LiveReviewOutcome live_{.clients = 2};
    std::string said_;
    StudioState state_{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
    StudioScreens screens_{state_};
    StudioScript script_{
        state_,
        screens_,
        {.folder = folder_,
         .output = folder_,
         .drawFigure = nullptr,
         .drafting = {.makeGenerator =
                          [this](StudioState&) { return std::make_unique<Lent>(model_); },
                      .waitUntil =
                          [this](const std::function<bool()>& holds) {
                              while (!holds()) {
                                  model_.answer(answer_);
                              }
                          }},
         .liveReview =
             [this](StudioState&, const LiveReviewRequest& request) {
                 request.began("0427", request.port);
                 return live_;
             },
         .say =
             [this](const std::string& line) {
                 said_ += line;
             }}};
};

TEST_F(SharingSteps, WriteAPacketAndWaitForItsPlainLanguage) {
    const StepOutcome outcome = perform(R"({"packet": "study.bsk"})");
    EXPECT_EQ(outcome.refusal, std::nullopt);
    EXPECT_EQ(outcome.report["file"], (folder_ / "study.bsk").string());
    EXPECT_EQ(
        outcome.report["messages"]["saveStatusMessage"],
        "Exported to " + (folder_ / "study.bsk").string() + ". Open in Kestrin Deck on iPad.");
    EXPECT_EQ(read("study.bsk")["reviewFindings"][0]["decisionNote"], "Plain words.");
    EXPECT_FALSE(read("study.bsk").contains("previewRows"));
    model_.reason = "off";
    perform(R"({"packet": {"file": "more.bsk", "includeDataPreview": true}})");
    EXPECT_EQ(read("more.bsk")["previewRows"].size(), 3U);
    EXPECT_FALSE(read("more.bsk")["reviewFindings"][0].contains("decisionNote"));
    EXPECT_EQ(perform(R"({"packet": "none/x.bsk"})").refusal,
              "Export failed: No such file or directory");
}

TEST_F(SharingSteps, DraftAndFlagNumbersOfTheModelsOwn) {
    answer_ = "Some 987 people.";
    const StepOutcome outcome = perform(R"({"draft": {"refinement": "simpler"}})");
    EXPECT_EQ(outcome.refusal, std::nullopt);
    EXPECT_EQ(outcome.report["text"], "Some 987 people.");
    EXPECT_EQ(
        outcome.report["flag"],
        "This number is not in the findings: 987. Check it and its sign before you use the text.");
    EXPECT_EQ(model_.requests.size(), 2U);
    EXPECT_EQ(perform(R"({"draft": {"finding": "None"}})").refusal,
              "No staged finding has the title \"None\".");
    model_.reason = "This Mac does not support Apple Intelligence.";
    EXPECT_EQ(perform(R"({"draft": {}})").refusal, model_.reason);
}

TEST_F(SharingSteps, OfferALiveReviewAndTellItsCode) {
    const StepOutcome outcome = perform(R"({"live": {"clients": 2, "port": 9848}})");
    EXPECT_EQ(outcome.refusal, std::nullopt);
    EXPECT_EQ(outcome.report["clients"], 2);
    EXPECT_EQ(said_, "Live review on port 9848, pair code 0427.");
    EXPECT_EQ(perform(R"({"live": {"clients": 3}})").refusal,
              "The time was over when 2 of 3 clients had the packet.");
    live_.failure = "Live review cannot be offered.";
    EXPECT_EQ(perform(R"({"live": {}})").refusal, live_.failure);
    for (const char* const wrong :
         {R"({"clients": 0})", R"({"seconds": 0})", R"({"seconds": 1e9})", R"({"port": 65536})"}) {
        EXPECT_TRUE(perform("{\"live\": " + std::string(wrong) + "}")
                        .refusal.value_or("")
                        .starts_with("The step \"live\" takes"))
            << wrong;
    }
}

}  // namespace
}  // namespace sorvane
