#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Drafting/DraftingInstructions.h"
#include "SorvaneMac/Drafting/TextGenerator.h"
#include "SorvaneMac/State/UserDefaults.h"

namespace sorvane {

/// Explains one result in plain words, or drafts a summary of staged findings, with a language
/// model on this machine. It computes no number: the result goes in as it stands.
class IntelligenceService {
public:
    using Refinement = DraftingInstructions::Refinement;

    /// The generator must outlive the service.
    explicit IntelligenceService(TextGenerator& generator) : generator_(generator) {}

    /// Explains a result. What the listener gets is sanitized.
    ///
    /// Failure    unavailable -> null, and nothing is asked
    std::unique_ptr<DraftRun> interpretStream(const std::string& text,
                                              Refinement refinement,
                                              DraftListener listener);
    /// Drafts one summary of the findings, given as their text.
    std::unique_ptr<DraftRun> draftSummaryStream(const std::string& findings,
                                                 Refinement refinement,
                                                 DraftListener listener);
    /// The same for a request of our own.
    std::unique_ptr<DraftRun> stream(const DraftRequest& request, DraftListener listener);

    std::optional<std::string> unavailableReason() const { return generator_.unavailableReason(); }

private:
    TextGenerator& generator_;
};

/// How helpful drafts were, counted in the user's defaults; nothing leaves the machine.
namespace IntelligenceFeedback {

enum class Rating { helpful, notHelpful };

/// Counts the rating and keeps when it was given.
void rate(UserDefaults& defaults, Rating rating, double secondsSince1970);

}  // namespace IntelligenceFeedback

}  // namespace sorvane
