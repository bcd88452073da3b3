#include "SorvaneMac/Drafting/IntelligenceService.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "SorvaneMac/Drafting/DraftingWording.h"
#include "SorvaneMac/Drafting/SanitizedText.h"

namespace sorvane {

namespace {

/// Cleans what the generator gives on its way to the listener.
DraftListener sanitizing(DraftListener listener) {
    const auto latest = std::make_shared<std::string>();
    return {.grown =
                [latest, grown = listener.grown](const std::string& text) {
                    *latest = text;
                    grown(SanitizedText::sanitizedSoFar(text));
                },
            .ended =
                [latest, listener](const std::optional<std::string>& failure) {
                    const std::string text = SanitizedText::sanitized(*latest);
                    // Kept apart, as the listener may destroy the run, and this with it.
                    const std::weak_ptr<std::string> underWay = latest;
                    const auto ended = listener.ended;
                    const std::optional<std::string> said =
                        !failure && text.empty() ? DraftingWording::noText() : failure;
                    listener.grown(text);
                    if (!underWay.expired()) {
                        ended(said);
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
    return unavailableReason() ? nullptr
                               : generator_.start(request, sanitizing(std::move(listener)));
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
