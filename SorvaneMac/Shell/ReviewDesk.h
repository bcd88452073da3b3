#pragma once

#include <QPointer>
#include <QWidget>

#include "SorvaneMac/Drafting/IntelligenceService.h"
#include "SorvaneMac/Platform/LoopbackTextGenerator.h"
#include "SorvaneMac/Platform/ReviewLivePublisher.h"
#include "SorvaneMac/Review/PacketExport.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The settings of drafting as the workspace holds them.
inline GeneratorSettings generatorSettings(const StudioState& state) {
    return {.isOn = state.sharing.intelligenceIsOn.get(),
            .address = state.sharing.intelligenceAddress.get(),
            .model = state.sharing.intelligenceModel.get()};
}

/// By which findings leave the window, other than as a report: packets, live review, drafting.
struct ReviewDesk {
    explicit ReviewDesk(StudioState& state,
                        const BriselReviewLivePublisher::Options& publishing = {})
        : generator([&state] { return generatorSettings(state); }),
          packets(state, &intelligence),
          publisher(publishing) {}

    LoopbackTextGenerator generator;
    IntelligenceService intelligence{generator};
    PacketExport packets;
    BriselReviewLivePublisher publisher;
    /// The sheet that shows it; null while none is open.
    QPointer<QWidget> sheet;
};

}  // namespace sorvane
