#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

#include "SorvaneMac/Headless/StudioScript.h"

namespace sorvane {

/// What a command line without a window ends with.
enum class ExitStatus {
    success = 0,
    /// A file that cannot be imported, or a step that the workspace refused.
    refused = 1,
    /// An unknown command or procedure, or bad arguments.
    badArguments = 2,
};

/// Where a command reads and writes.
struct CommandStreams {
    std::istream& in;
    std::ostream& out;
    std::ostream& error;
};

/// What the program lends to a command.
struct ProgramParts {
    /// The files that come with the program.
    std::filesystem::path resources;
    /// Absent where nothing can draw.
    FigureDrawing drawFigure;
    DraftingHost drafting{};
    LiveReviewHost liveReview{};
};

/// The commands that need no window, by their words after the program's name.
namespace Commands {

/// Whether the first word names one of these commands.
bool isCommand(const std::string& word);

/// Runs `call`, `procedures`, `describe`, `run` or `operations`.
ExitStatus run(const std::vector<std::string>& words,
               const ProgramParts& program,
               CommandStreams streams);

}  // namespace Commands

/// A script and where it writes.
struct ScriptRun {
    std::filesystem::path script;
    std::filesystem::path output = ".";
};

/// Carries out the steps of a script in a workspace, up to the first that it refuses, and tells of
/// each in a line of JSON.
ExitStatus performScript(StudioState& state,
                         StudioScreens& screens,
                         const ScriptRun& run,
                         const ProgramParts& program,
                         CommandStreams streams);

ExitStatus callCommand(const std::vector<std::string>& words, CommandStreams streams);
ExitStatus proceduresCommand(CommandStreams streams);
ExitStatus operationsCommand(CommandStreams streams);
ExitStatus describeCommand(const std::vector<std::string>& words, CommandStreams streams);
ExitStatus runCommand(const std::vector<std::string>& words,
                      const ProgramParts& program,
                      CommandStreams streams);

}  // namespace sorvane
