#include "SorvaneMac/Drafting/DraftBoard.h"

#include "SorvaneMac/Drafting/DraftingWording.h"
#include "SorvaneMac/Drafting/NumbersInText.h"

namespace sorvane {

void DraftBoard::interpret(const ReportItem& finding) {
    kind_ = Kind::result;
    source_ = DraftingInstructions::resultText(finding);
    draft(std::nullopt);
}

void DraftBoard::summarize(const std::vector<ReportItem>& findings) {
    kind_ = Kind::summary;
    source_ = DraftingInstructions::findingsText(findings);
    draft(std::nullopt);
}

void DraftBoard::refine(IntelligenceRefinement refinement) {
    if (!source_.empty()) {
        draft(refinement);
    }
}

void DraftBoard::draft(IntelligenceService::Refinement refinement) {
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
    run_ = kind_ == Kind::result
               ? service_.interpretStream(source_, refinement, std::move(listener))
               : service_.draftSummaryStream(source_, refinement, std::move(listener));
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
    const std::vector<std::string> strangers = NumbersInText::foreign(text_, source_);
    return strangers.empty() ? std::nullopt
                             : std::optional(DraftingWording::foreignNumbers(strangers));
}

}  // namespace sorvane
