#include <algorithm>

#include "SorvaneMac/Drafting/DraftBoard.h"
#include "SorvaneMac/Headless/StepRefused.h"
#include "SorvaneMac/Headless/StudioScript.h"
#include "SorvaneMac/Review/PacketExport.h"

namespace sorvane {

namespace {

struct PacketStep {
    std::string file{};
    std::optional<bool> includeDataPreview{};
};
BOOST_DESCRIBE_STRUCT(PacketStep, (), (file, includeDataPreview))

struct DraftStep {
    /// The title of the finding to explain; absent for a summary of all.
    std::optional<std::string> finding{};
    std::optional<IntelligenceRefinement> refinement{};
};
BOOST_DESCRIBE_STRUCT(DraftStep, (), (finding, refinement))

/// Stands where the program lends nothing that drafts.
class NoGenerator final : public TextGenerator {
public:
    std::optional<std::string> unavailableReason() const override {
        return "This program cannot draft here.";
    }
    std::unique_ptr<DraftRun> start(const DraftRequest&, DraftListener) override { return nullptr; }
};

std::unique_ptr<TextGenerator> generatorOf(const DraftingHost& host, StudioState& state) {
    return host.makeGenerator ? host.makeGenerator(state) : std::make_unique<NoGenerator>();
}

void ask(DraftBoard& board, const StudioState& state, const DraftStep& step) {
    const std::vector<ReportItem>& items = state.reportItems.get();
    if (items.empty()) {
        throw StepRefused("Stage at least one result first.");
    }
    if (!step.finding) {
        board.summarize(items);
        return;
    }
    const auto finding = std::ranges::find(items, *step.finding, &ReportItem::title);
    if (finding == items.end()) {
        throw StepRefused("No staged finding has the title \"" + *step.finding + "\".");
    }
    board.interpret(*finding);
}

}  // namespace

Json StudioScript::exportPacket(const Json& argument) {
    using ReviewBundleExporter::DataPreview;
    const PacketStep step = argument.is_string() ? PacketStep{.file = argument.get<std::string>()}
                                                 : argumentOf<PacketStep>(argument);
    const bool hasPreview = step.includeDataPreview.value_or(state_.sharing.packetHasPreview.get());
    const std::filesystem::path file = files_.output / step.file;
    const std::unique_ptr<TextGenerator> generator = generatorOf(files_.drafting, state_);
    IntelligenceService service(*generator);
    PacketExport packets(state_, &service);
    if (!packets.exportToIPad(file, hasPreview ? DataPreview::leadingRows : DataPreview::none)) {
        throw StepRefused(*state_.saveStatusMessage.get());
    }
    if (packets.isFinishing()) {
        files_.drafting.waitUntil([&packets] { return !packets.isFinishing(); });
    }
    Json gave = Json::object();
    gave["file"] = file.string();
    return gave;
}

Json StudioScript::draft(const Json& argument) {
    const auto step = argumentOf<DraftStep>(argument);
    const std::unique_ptr<TextGenerator> generator = generatorOf(files_.drafting, state_);
    IntelligenceService service(*generator);
    if (const std::optional<std::string> reason = service.unavailableReason()) {
        throw StepRefused(*reason);
    }
    DraftBoard board(service, state_.defaults(), [] {});
    const auto settle = [this, &board] {
        if (board.isDrafting()) {
            files_.drafting.waitUntil([&board] { return !board.isDrafting(); });
        }
    };
    ask(board, state_, step);
    settle();
    if (step.refinement && board.isFinished()) {
        board.refine(*step.refinement);
        settle();
    }
    if (board.failure()) {
        throw StepRefused(*board.failure());
    }
    Json gave = Json::object();
    gave["text"] = board.text();
    if (const std::optional<std::string> flag = board.flag()) {
        gave["flag"] = *flag;
    }
    return gave;
}

}  // namespace sorvane
