#pragma once

#include <boost/describe/class.hpp>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace sorvane {

/// What a language model is asked.
struct DraftRequest {
    std::string instructions{};
    std::string prompt{};

    bool operator==(const DraftRequest&) const = default;
};
BOOST_DESCRIBE_STRUCT(DraftRequest, (), (instructions, prompt))

/// Who is told of a draft under way, on the thread that asked and never before `start` returns.
struct DraftListener {
    /// Gets the whole text so far each time it has grown.
    std::function<void(const std::string& text)> grown;
    /// Called once, at the end; with the sentence that says why where the draft broke off.
    std::function<void(const std::optional<std::string>& failure)> ended;
};

/// A draft under way. Destroying it cancels it, after which its listener is not called; a listener
/// may do so itself.
class DraftRun {
public:
    virtual ~DraftRun() = default;
};

/// Something that writes text to instructions: the edge to the language model.
class TextGenerator {
public:
    virtual ~TextGenerator() = default;
    /// Why nothing can be asked of it; absent where it can.
    virtual std::optional<std::string> unavailableReason() const = 0;
    /// Asks, in a session of its own. Only where nothing speaks against it.
    virtual std::unique_ptr<DraftRun> start(const DraftRequest& request,
                                            DraftListener listener) = 0;
};

}  // namespace sorvane
