#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Drafting/IntelligenceService.h"

namespace sorvane {

/// The one draft that a card shows: what it is made of, how far it is, and what is wrong with it.
class DraftBoard {
public:
    /// All outlive the board; `changed` is called after each change.
    DraftBoard(IntelligenceService& service, UserDefaults& defaults, std::function<void()> changed)
        : service_(service), defaults_(defaults), changed_(std::move(changed)) {}

    /// Explains one finding, or drafts a summary of several, in place of what stands. While the
    /// service is unavailable nothing is asked and what stands stays; so it is with `refine`.
    void interpret(const ReportItem& finding);
    void summarize(const std::vector<ReportItem>& findings);
    /// Asks once more for what was asked last, with a revision request.
    void refine(IntelligenceRefinement refinement);
    /// Ends a draft under way; the text so far stays.
    void stop();
    /// Counts the rating of a draft that stands, once.
    void rate(IntelligenceFeedback::Rating rating, double secondsSince1970);

    std::optional<std::string> unavailableReason() const { return service_.unavailableReason(); }
    bool isDrafting() const { return run_ != nullptr; }
    const std::string& text() const { return text_; }
    /// Why the draft broke off; absent otherwise.
    const std::optional<std::string>& failure() const { return failure_; }
    /// The flag under a text that holds numbers which its findings do not; absent otherwise.
    std::optional<std::string> flag() const;
    /// Whether a text stands to revise, copy and rate: a whole draft, or one as far as it was
    /// when it was stopped.
    bool isFinished() const { return !isDrafting() && !text_.empty() && !failure_; }
    bool isRated() const { return isRated_; }

private:
    enum class Kind { result, summary };

    /// What was asked last, for a revision and for the numbers that a text may hold.
    struct Asked {
        Kind kind = Kind::result;
        std::string source{};
    };

    void draft(const Asked& asked, IntelligenceService::Refinement refinement);

    IntelligenceService& service_;
    UserDefaults& defaults_;
    std::function<void()> changed_;
    Asked asked_;
    std::string text_;
    std::optional<std::string> failure_;
    bool isRated_ = false;
    std::unique_ptr<DraftRun> run_;
};

}  // namespace sorvane
