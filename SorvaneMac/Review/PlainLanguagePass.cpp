#include "SorvaneMac/Review/PlainLanguagePass.h"

#include <array>
#include <utility>

#include "SorvaneMac/Drafting/DraftingWording.h"
#include "SorvaneMac/Drafting/NumbersInText.h"

namespace sorvane {

namespace {

using Hint = ReviewFindingHintPayload;

/// A field and what is asked for it beyond an explanation; empty for the explanation itself.
struct Wanted {
    std::optional<std::string> Hint::*field;
    std::string_view request;
};

constexpr std::array<Wanted, 3> wanted = {
    {{&Hint::plainLanguage, ""},
     {&Hint::practicalMeaning,
      "Write one or two sentences only, on what this result means in practice."},
     {&Hint::decisionNote,
      "Write one or two sentences only, on what someone who has to decide may take from this "
      "result and what not."}}};

}  // namespace

std::unique_ptr<PlainLanguagePass> PlainLanguagePass::enrichPlainLanguage(
    IntelligenceService& service,
    std::vector<ReportItem> findings,
    std::vector<ReviewFindingHintPayload> hints,
    Done done) {
    if (findings.empty() || findings.size() != hints.size() || service.unavailableReason()) {
        return nullptr;
    }
    std::unique_ptr<PlainLanguagePass> pass(
        new PlainLanguagePass(service, std::move(findings), std::move(hints), std::move(done)));
    pass->askNext();
    return pass;
}

PlainLanguagePass::PlainLanguagePass(IntelligenceService& service,
                                     std::vector<ReportItem> findings,
                                     std::vector<ReviewFindingHintPayload> hints,
                                     Done done)
    : service_(service),
      findings_(std::move(findings)),
      hints_(std::move(hints)),
      done_(std::move(done)) {}

void PlainLanguagePass::askNext() {
    const std::size_t finding = asked_ / wanted.size();
    if (finding == findings_.size()) {
        finish();
        return;
    }
    const std::string_view request = wanted[asked_ % wanted.size()].request;
    text_.clear();
    run_ = service_.stream(
        {.instructions = request.empty() ? DraftingInstructions::interpret()
                                         : DraftingInstructions::interpretWith(request),
         .prompt = DraftingInstructions::resultText(findings_[finding])},
        {.grown = [this](const std::string& text) { text_ = text; },
         .ended =
             [this](const std::optional<std::string>& failure) {
                 take(failure);
             }});
    if (!run_) {
        // Drafting was switched off meanwhile.
        finish();
    }
}

void PlainLanguagePass::take(const std::optional<std::string>& failure) {
    const std::size_t finding = asked_ / wanted.size();
    const bool isEmpty = failure == DraftingWording::noText();
    if (failure && !isEmpty) {
        finish();
        return;
    }
    const std::string source = DraftingInstructions::resultText(findings_[finding]);
    if (!isEmpty && NumbersInText::foreign(text_, source).empty()) {
        hints_[finding].*wanted[asked_ % wanted.size()].field = text_;
    }
    ++asked_;
    askNext();
}

void PlainLanguagePass::finish() {
    // The owner may destroy the pass when it is told.
    const Done done = std::move(done_);
    done(std::move(hints_));
}

}  // namespace sorvane
