#include <algorithm>
#include <limits>

#include "SorvaneCore/Numerics/NumberText.h"
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

struct LiveStep {
    std::optional<std::int64_t> clients{};
    std::optional<double> seconds{};
    std::optional<std::int64_t> port{};
};
BOOST_DESCRIBE_STRUCT(LiveStep, (), (clients, seconds, port))

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

LiveReviewRequest requested(const LiveStep& step) {
    constexpr double longest = 86'400.0;
    LiveReviewRequest request;
    request.clients = step.clients.value_or(request.clients);
    request.seconds = step.seconds.value_or(request.seconds);
    const std::int64_t port = step.port.value_or(request.port);
    if (request.clients < 1 || !(request.seconds > 0.0 && request.seconds <= longest) || port < 0 ||
        port > std::numeric_limits<std::uint16_t>::max()) {
        throw StepRefused(
            "The step \"live\" takes 1 client or more, a day's seconds at most, and a port up to "
            "65535.");
    }
    request.port = static_cast<std::uint16_t>(port);
    return request;
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

Json StudioScript::presentLive(const Json& argument) {
    LiveReviewRequest request = requested(argumentOf<LiveStep>(argument));
    if (!files_.liveReview) {
        throw StepRefused("This program cannot offer a live review here.");
    }
    request.began = [this](const std::string& pairCode, std::uint16_t port) {
        if (files_.say) {
            files_.say("Live review on port " + NumberText::integer(port) + ", pair code " +
                       pairCode + ".");
        }
    };
    const LiveReviewOutcome outcome = files_.liveReview(state_, request);
    if (outcome.failure) {
        throw StepRefused(*outcome.failure);
    }
    if (outcome.clients < request.clients) {
        throw StepRefused("The time was over when " + NumberText::integer(outcome.clients) +
                          " of " + NumberText::integer(request.clients) +
                          " clients had the packet.");
    }
    Json gave = Json::object();
    gave["clients"] = outcome.clients;
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
