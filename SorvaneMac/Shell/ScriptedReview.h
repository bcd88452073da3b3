#pragma once

#include "SorvaneMac/Headless/StudioScript.h"

namespace sorvane {

/// Offers a live review without a window, while the events of this thread pass, until as many
/// clients as are asked for have the whole packet or the time is over.
///
/// Returns    the clients that have it
LiveReviewOutcome offerLiveReview(StudioState& state, const LiveReviewRequest& request);

}  // namespace sorvane
