#include "SorvaneMac/Drafting/IntelligenceService.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "SorvaneMac/Drafting/DraftingWording.h"
#include "SorvaneMac/Drafting/SanitizedText.h"

namespace sorvane {

namespace {

/// A draft that holds what its listener was last given: when it goes, nobody is told any more,
/// whoever still holds the listener.
struct SanitizedRun final : DraftRun {
    SanitizedRun(std::shared_ptr<std::string> text, std::unique_ptr<DraftRun> generated)
        : latest(std::move(text)), run(std::move(generated)) {}

    std::shared_ptr<std::string> latest;
    std::unique_ptr<DraftRun> run;
};

/// Cleans what the generator gives on its way to the listener, for as long as `latest` stands.
DraftListener sanitizing(DraftListener listener, std::weak_ptr<std::string> latest) {
    return {
        .grown =
            [latest, grown = listener.grown](const std::string& text) {
                if (const auto held = latest.lock()) {
                    *held = text;
                    grown(SanitizedText::sanitizedSoFar(text));
                }
            },
        .ended =
            [latest, listener = std::move(listener)](const std::optional<std::string>& failure) {
                // Kept apart, as the listener may destroy the run, and this with it.
                const std::weak_ptr<std::string> underWay = latest;
                const DraftListener told = listener;
                if (underWay.expired()) {
                    return;
                }
                const std::string text = SanitizedText::sanitized(*underWay.lock());
                const std::optional<std::string> said =
                    !failure && text.empty() ? DraftingWording::noText() : failure;
                told.grown(text);
                if (!underWay.expired()) {
                    told.ended(said);
                }
            }};
}

}  // namespace

std::unique_ptr<DraftRun> IntelligenceService::interpretStream(const std::string& text,
                                                               Refinement refinement,
                                                               DraftListener listener) {
    return stream({.instructions = DraftingInstructions::interpret(refinement), .prompt = text},
                  std::move(listener));
}

std::unique_ptr<DraftRun> IntelligenceService::draftSummaryStream(const std::string& findings,
                                                                  Refinement refinement,
                                                                  DraftListener listener) {
    return stream({.instructions = DraftingInstructions::summarize(refinement),
                   .prompt = DraftingInstructions::summaryPrompt(findings)},
                  std::move(listener));
}

std::unique_ptr<DraftRun> IntelligenceService::stream(const DraftRequest& request,
                                                      DraftListener listener) {
    if (unavailableReason()) {
        return nullptr;
    }
    auto latest = std::make_shared<std::string>();
    std::unique_ptr<DraftRun> run =
        generator_.start(request, sanitizing(std::move(listener), latest));
    return run ? std::make_unique<SanitizedRun>(std::move(latest), std::move(run)) : nullptr;
}

namespace IntelligenceFeedback {

void rate(UserDefaults& defaults, Rating rating, double secondsSince1970) {
    const std::string_view key =
        rating == Rating::helpful ? "sv.intelligence.feedback.up" : "sv.intelligence.feedback.down";
    const Json former = defaults.value(key);
    const std::int64_t count = former.is_number_integer() ? former.get<std::int64_t>() : 0;
    defaults.set(key, count + 1);
    defaults.set("sv.intelligence.feedback.last", secondsSince1970);
}

}  // namespace IntelligenceFeedback

}  // namespace sorvane
