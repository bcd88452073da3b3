#pragma once

#include <functional>
#include <memory>
#include <string>

#include "SorvaneMac/Drafting/TextGenerator.h"

class QNetworkAccessManager;

namespace sorvane {

/// What the user prefers of drafting.
struct GeneratorSettings {
    bool isOn = false;
    std::string address{};
    std::string model{};

    bool operator==(const GeneratorSettings&) const = default;
};

/// Asks a local server that speaks the chat-completions interface, and reads its answer as it
/// streams.
///
/// Connects to addresses of this machine alone: no name is looked up, no proxy is used, and no
/// redirection is followed. Needs the events of the thread that made it.
class LoopbackTextGenerator final : public TextGenerator {
public:
    /// `settings` is asked before every draft; a server that is silent for so long is given up.
    explicit LoopbackTextGenerator(std::function<GeneratorSettings()> settings,
                                   int silentMilliseconds = 120'000);
    ~LoopbackTextGenerator() override;

    std::optional<std::string> unavailableReason() const override;
    std::unique_ptr<DraftRun> start(const DraftRequest& request, DraftListener listener) override;

private:
    std::function<GeneratorSettings()> settings_;
    int silentMilliseconds_;
    std::unique_ptr<QNetworkAccessManager> network_;
};

}  // namespace sorvane
