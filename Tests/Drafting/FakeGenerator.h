#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "SorvaneMac/Drafting/TextGenerator.h"

namespace sorvane {

/// A generator whose answers a test gives, when it likes.
class FakeGenerator final : public TextGenerator {
public:
    std::optional<std::string> unavailableReason() const override { return reason; }

    std::unique_ptr<DraftRun> start(const DraftRequest& request, DraftListener listener) override {
        requests.push_back(request);
        listener_ = std::make_shared<DraftListener>(std::move(listener));
        return std::make_unique<Run>(listener_);
    }

    bool isAsked() const { return listener_ && listener_.use_count() > 1; }
    void grow(const std::string& text) {
        const auto held = listener_;
        held->grown(text);
    }
    void end(const std::optional<std::string>& failure = std::nullopt) {
        const auto held = listener_;
        held->ended(failure);
    }
    void answer(const std::string& text) {
        grow(text);
        end();
    }

    std::optional<std::string> reason;
    std::vector<DraftRequest> requests;

private:
    /// Stands for as long as the draft is wanted.
    struct Run final : DraftRun {
        explicit Run(std::shared_ptr<DraftListener> held) : listener(std::move(held)) {}
        std::shared_ptr<DraftListener> listener;
    };
    std::shared_ptr<DraftListener> listener_;
};

}  // namespace sorvane
