#include "SorvaneMac/Headless/Commands.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>

namespace sorvane::Commands {

namespace {

constexpr std::array<std::string_view, 5> commandWords = {"call", "procedures", "describe", "run",
                                                          "operations"};

}  // namespace

bool isCommand(const std::string& word) {
    return std::find(commandWords.begin(), commandWords.end(), word) != commandWords.end();
}

ExitStatus run(const std::vector<std::string>& words,
               const ProgramParts& program,
               CommandStreams streams) {
    const std::string& command = words.front();
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    if (command == "call") {
        return callCommand(rest, streams);
    }
    if (command == "procedures") {
        return proceduresCommand(streams);
    }
    if (command == "operations") {
        return operationsCommand(streams);
    }
    if (command == "describe") {
        return describeCommand(rest, streams);
    }
    if (command == "run") {
        return runCommand(rest, program, streams);
    }
    streams.error << "There is no command \"" << command << "\".\n";
    return ExitStatus::badArguments;
}

}  // namespace sorvane::Commands
