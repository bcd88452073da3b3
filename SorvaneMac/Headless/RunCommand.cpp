#include <fstream>
#include <optional>
#include <ostream>
#include <system_error>

#include "SorvaneMac/Headless/Commands.h"
#include "SorvaneMac/Headless/StudioScript.h"

namespace sorvane {

namespace {

constexpr std::string_view usage = "Run a script so: sorvane run SCRIPT.json [--out DIR]";

struct RunOptions {
    std::filesystem::path script;
    std::filesystem::path output = ".";
};

std::optional<RunOptions> readOptions(const std::vector<std::string>& words) {
    RunOptions options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i] == "--out" && i + 1 < words.size()) {
            options.output = words[++i];
        } else if (options.script.empty()) {
            options.script = words[i];
        } else {
            return std::nullopt;
        }
    }
    return options.script.empty() ? std::nullopt : std::optional(options);
}

std::optional<Json> readScript(const std::filesystem::path& file, std::ostream& error) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        error << "The script " << file.string() << " cannot be read.\n";
        return std::nullopt;
    }
    try {
        Json script = Json::parse(stream);
        if (script.is_object() && script.contains("steps") && script["steps"].is_array()) {
            return script;
        }
        error << "A script is an object with a list of \"steps\".\n";
    } catch (const Json::parse_error& failure) {
        error << "The script is not JSON: " << failure.what() << '\n';
    }
    return std::nullopt;
}

}  // namespace

ExitStatus runCommand(const std::vector<std::string>& words,
                      const ProgramParts& program,
                      CommandStreams streams) {
    const std::optional<RunOptions> options = readOptions(words);
    if (!options) {
        streams.error << usage << '\n';
        return ExitStatus::badArguments;
    }
    const std::optional<Json> script = readScript(options->script, streams.error);
    if (!script) {
        return ExitStatus::badArguments;
    }
    std::error_code failure;
    std::filesystem::create_directories(options->output, failure);
    if (failure) {
        streams.error << "The folder " << options->output.string()
                      << " cannot be made: " << failure.message() << ".\n";
        return ExitStatus::refused;
    }
    StudioState state(program.resources);
    StudioScreens screens(state);
    StudioScript runner(state, screens,
                        {.folder = options->script.parent_path(),
                         .output = options->output,
                         .drawFigure = program.drawFigure});
    for (const Json& step : (*script)["steps"]) {
        const StepOutcome outcome = runner.perform(step);
        streams.out << outcome.report.dump(-1, ' ', false, Json::error_handler_t::replace)
                    << std::endl;
        if (outcome.refusal) {
            streams.error << *outcome.refusal << '\n';
            return ExitStatus::refused;
        }
    }
    return ExitStatus::success;
}

}  // namespace sorvane
