#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <system_error>

#include "SorvaneMac/Headless/Commands.h"
#include "SorvaneMac/Headless/GivenJson.h"
#include "SorvaneMac/Headless/StudioScript.h"

namespace sorvane {

namespace {

constexpr std::string_view usage = "Run a script so: sorvane run SCRIPT.json [--out DIR]";

std::optional<ScriptRun> readOptions(const std::vector<std::string>& words) {
    ScriptRun options;
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

/// Absent for anything that is no script, of which the stream is told.
std::optional<Json> readScript(const std::filesystem::path& file, std::ostream& error) {
    try {
        Json script = GivenJson::ofFile(file, "script");
        if (script.is_object() && script.contains("steps") && script["steps"].is_array()) {
            return script;
        }
        error << "A script is an object with a list of \"steps\".\n";
    } catch (const GivenJsonError& failure) {
        error << failure.what() << '\n';
    }
    return std::nullopt;
}

}  // namespace

ExitStatus performScript(StudioState& state,
                         StudioScreens& screens,
                         const ScriptRun& run,
                         const ProgramParts& program,
                         CommandStreams streams) {
    const std::optional<Json> script = readScript(run.script, streams.error);
    if (!script) {
        return ExitStatus::badArguments;
    }
    std::error_code failure;
    std::filesystem::create_directories(run.output, failure);
    if (failure) {
        streams.error << "The folder " << run.output.string()
                      << " cannot be made: " << failure.message() << ".\n";
        return ExitStatus::refused;
    }
    StudioScript runner(state, screens,
                        {.folder = run.script.parent_path(),
                         .output = run.output,
                         .drawFigure = program.drawFigure,
                         .drafting = program.drafting,
                         .liveReview = program.liveReview,
                         .say = [&streams](const std::string& line) {
                             streams.error << line << std::endl;
                         }});
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

ExitStatus runCommand(const std::vector<std::string>& words,
                      const ProgramParts& program,
                      CommandStreams streams) {
    const std::optional<ScriptRun> options = readOptions(words);
    if (!options) {
        streams.error << usage << '\n';
        return ExitStatus::badArguments;
    }
    StudioState state(program.resources);
    StudioScreens screens(state);
    return performScript(state, screens, *options, program, streams);
}

}  // namespace sorvane
