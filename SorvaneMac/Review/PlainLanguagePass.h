#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Drafting/IntelligenceService.h"
#include "SorvaneMac/Review/ReviewBundlePayload.h"

namespace sorvane {

/// Fills the plain-language fields of a packet's hints, one draft after the other, in the
/// background. Destroying it ends it without a word.
///
/// A draft that holds a number which its finding does not hold is left out, since nothing in a
/// packet could flag it. The first draft that breaks off ends the pass; what was filled stays.
class PlainLanguagePass {
public:
    using Done = std::function<void(std::vector<ReviewFindingHintPayload>)>;

    /// Input      one hint per finding, in their order; the service outlives the pass
    /// Returns    null where the service is unavailable or there is no finding
    static std::unique_ptr<PlainLanguagePass> enrichPlainLanguage(
        IntelligenceService& service,
        std::vector<ReportItem> findings,
        std::vector<ReviewFindingHintPayload> hints,
        Done done);

private:
    PlainLanguagePass(IntelligenceService& service,
                      std::vector<ReportItem> findings,
                      std::vector<ReviewFindingHintPayload> hints,
                      Done done);
    void askNext();
    void take(const std::optional<std::string>& failure);
    void finish();

    IntelligenceService& service_;
    std::vector<ReportItem> findings_;
    std::vector<ReviewFindingHintPayload> hints_;
    Done done_;
    /// Counts the fields asked for: all of one finding, then those of the next.
    std::size_t asked_ = 0;
    std::string text_;
    std::unique_ptr<DraftRun> run_;
};

}  // namespace sorvane
