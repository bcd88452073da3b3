#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

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

/// The commands that need no window, by their words after the program's name.
namespace Commands {

/// Whether the first word names one of these commands.
bool isCommand(const std::string& word);

/// Runs `call`, `procedures`, `describe` or `run`; `resources` holds the files of the program.
ExitStatus run(const std::vector<std::string>& words,
               const std::filesystem::path& resources,
               CommandStreams streams);

}  // namespace Commands

ExitStatus callCommand(const std::vector<std::string>& words, CommandStreams streams);
ExitStatus proceduresCommand(CommandStreams streams);
ExitStatus describeCommand(const std::vector<std::string>& words, CommandStreams streams);
ExitStatus runCommand(const std::vector<std::string>& words,
                      const std::filesystem::path& resources,
                      CommandStreams streams);

}  // namespace sorvane
