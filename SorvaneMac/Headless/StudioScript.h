#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneMac/Drafting/TextGenerator.h"
#include "SorvaneMac/Review/PairHandshake.h"
#include "SorvaneMac/Screens/StudioScreens.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// What the workspace says after one step of a script.
struct StepOutcome {
    /// One object: the step, the table's size, the screen, messages, and what the step gave.
    Json report;
    /// Why the workspace refused the step; absent when it was carried out.
    std::optional<std::string> refusal;
};

/// Draws a chart as the figure of a finding, a PNG image.
using FigureDrawing = std::function<std::vector<std::uint8_t>(const Chart&)>;

/// How a script reaches a language model: what makes the way to it, and what waits for its answer.
/// Both or neither.
struct DraftingHost {
    std::function<std::unique_ptr<TextGenerator>(StudioState&)> makeGenerator;
    /// Lets events pass until the condition holds.
    std::function<void(const std::function<bool()>& holds)> waitUntil;
};

/// A live review as a script asks for it.
struct LiveReviewRequest {
    std::uint16_t port = ReviewWire::port;
    /// It ends when so many clients have the packet.
    std::int64_t clients = 1;
    /// It ends then in any case.
    double seconds = 300.0;
    /// Told when it begins.
    std::function<void(const std::string& pairCode, std::uint16_t port)> began;
};

/// How a live review ended.
struct LiveReviewOutcome {
    std::int64_t clients = 0;
    /// Why it could not be offered, or broke off; absent otherwise.
    std::optional<std::string> failure{};
};

/// Offers the packet of the workspace over the local network, and waits.
using LiveReviewHost = std::function<LiveReviewOutcome(StudioState&, const LiveReviewRequest&)>;

/// Where a script reads and writes, and how it draws.
struct ScriptFiles {
    /// The script's own folder: a file that a step names is looked up here first.
    std::filesystem::path folder;
    /// Files that a step writes go here.
    std::filesystem::path output;
    /// Absent where nothing can draw; findings then have no figure.
    FigureDrawing drawFigure;
    DraftingHost drafting{};
    /// Absent where nothing can listen.
    LiveReviewHost liveReview{};
    /// Gets what has to be known while a step still goes on; absent where nobody listens.
    std::function<void(const std::string& line)> say{};
};

/// Drives the workspace through the operations that the window calls.
///
/// A step is an object with one key: `import` (file), `paste` (text), `blank`, `set` (field names
/// to values), `do` (an operation by name, or an object of one operation and its arguments), `run`
/// and `stage` (a screen's raw value), `press` (screen to the label of a button), `assemble`,
/// `export` (format to file name), `csv` (file name),
/// `packet` (file name), `live` (whom to wait for), `draft` (what to put into words), `open` and
/// `save` (project).
class StudioScript {
public:
    StudioScript(StudioState& state, StudioScreens& screens, ScriptFiles files);

    StepOutcome perform(const Json& step);

private:
    Json performNamed(const std::string& name, const Json& argument);
    Json importFile(const Json& argument);
    Json paste(const Json& argument);
    Json blank(const Json& argument);
    Json setFields(const Json& argument);
    Json doOperation(const Json& argument);
    Json runScreen(const Json& argument);
    Json pressButton(const Json& argument);
    Json stageScreen(const Json& argument);
    Json assemble(const Json& argument);
    Json exportReport(const Json& argument);
    Json exportCSV(const Json& argument);
    Json openProject(const Json& argument);
    Json saveProject(const Json& argument);
    Json exportPacket(const Json& argument);
    Json presentLive(const Json& argument);
    Json draft(const Json& argument);
    /// The file of that name beside the script, else among what its steps wrote, else as named.
    std::filesystem::path existing(const std::filesystem::path& named) const;

    StudioState& state_;
    StudioScreens& screens_;
    ScriptFiles files_;
};

}  // namespace sorvane
