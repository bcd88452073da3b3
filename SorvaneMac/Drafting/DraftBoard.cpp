#include "SorvaneMac/Drafting/DraftBoard.h"

#include "SorvaneMac/Drafting/DraftingWording.h"
#include "SorvaneMac/Drafting/NumbersInText.h"

namespace sorvane {

void DraftBoard::interpret(const ReportItem& finding) {
    draft({Kind::result, DraftingInstructions::resultText(finding)}, std::nullopt);
}

void DraftBoard::summarize(const std::vector<ReportItem>& findings) {
    draft({Kind::summary, DraftingInstructions::findingsText(findings)}, std::nullopt);
}

void DraftBoard::refine(IntelligenceRefinement refinement) {
    if (!asked_.source.empty()) {
        draft(asked_, refinement);
    }
}

void DraftBoard::draft(const Asked& asked, IntelligenceService::Refinement refinement) {
    if (unavailableReason()) {
        return;
    }
    asked_ = asked;
    run_.reset();
    text_.clear();
    failure_.reset();
    isRated_ = false;
    DraftListener listener{.grown =
                               [this](const std::string& text) {
                                   text_ = text;
                                   changed_();
                               },
                           .ended =
                               [this](const std::optional<std::string>& failure) {
                                   failure_ = failure;
                                   run_.reset();
                                   changed_();
                               }};
    run_ = asked_.kind == Kind::result
               ? service_.interpretStream(asked_.source, refinement, std::move(listener))
               : service_.draftSummaryStream(asked_.source, refinement, std::move(listener));
    changed_();
}

void DraftBoard::stop() {
    run_.reset();
    changed_();
}

void DraftBoard::rate(IntelligenceFeedback::Rating rating, double secondsSince1970) {
    if (isFinished() && !isRated_) {
        IntelligenceFeedback::rate(defaults_, rating, secondsSince1970);
        isRated_ = true;
        changed_();
    }
}

std::optional<std::string> DraftBoard::flag() const {
    const std::vector<std::string> strangers = NumbersInText::foreign(text_, asked_.source);
    return strangers.empty() ? std::nullopt
                             : std::optional(DraftingWording::foreignNumbers(strangers));
}

}  // namespace sorvane
