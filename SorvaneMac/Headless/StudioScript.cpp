#include "SorvaneMac/Headless/StudioScript.h"

#include <new>
#include <stdexcept>

#include "SorvaneMac/Headless/OperationTable.h"
#include "SorvaneMac/Headless/StepRefused.h"
#include "SorvaneMac/Report/ReportFiles.h"
#include "SorvaneMac/Report/RichDocument.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

namespace {

/// A step that is not one.
constexpr std::string_view stepForm = "A step is an object with one key, the step's name.";

constexpr std::string_view noMemory = "There is not enough memory for this step.";

void refuse(StepOutcome& outcome, std::string_view why) {
    outcome.refusal = std::string(why);
    outcome.report["refused"] = why;
}

/// What the workspace says: all its optional texts, but for the place of the project.
Json messages(const StudioState& state) {
    using Message = Field<std::optional<std::string>>;
    Json said = Json::object();
    for (const AnyField* field : state.fields.fields()) {
        const auto* message = dynamic_cast<const Message*>(field);
        if (message && message != &state.currentProjectURL && message->get()) {
            said[message->name()] = *message->get();
        }
    }
    return said;
}

}  // namespace

StudioScript::StudioScript(StudioState& state, StudioScreens& screens, ScriptFiles files)
    : state_(state), screens_(screens), files_(std::move(files)) {}

StepOutcome StudioScript::perform(const Json& step) {
    StepOutcome outcome;
    outcome.report = Json::object();
    try {
        if (!step.is_object() || step.size() != 1) {
            throw StepRefused(std::string(stepForm));
        }
        const std::string& name = step.begin().key();
        outcome.report["step"] = name;
        Json gave = performNamed(name, step.begin().value());
        for (auto& [key, value] : gave.items()) {
            outcome.report[key] = std::move(value);
        }
    } catch (const StepRefused& refused) {
        refuse(outcome, refused.what());
    } catch (const CallError& error) {
        refuse(outcome, error.what());
    } catch (const std::bad_alloc&) {
        refuse(outcome, noMemory);
    } catch (const std::length_error&) {
        refuse(outcome, noMemory);
    }
    outcome.report["dataset"] = state_.dataset().name;
    outcome.report["rows"] = state_.dataset().rowCount();
    outcome.report["columns"] = state_.dataset().columnCount();
    outcome.report["screen"] = std::string(rawValue(state_.selection.get()));
    outcome.report["staged"] = state_.reportItems->size();
    outcome.report["messages"] = messages(state_);
    return outcome;
}

Json StudioScript::performNamed(const std::string& name, const Json& argument) {
    using Step = Json (StudioScript::*)(const Json&);
    static const std::map<std::string, Step> steps = {
        {"import", &StudioScript::importFile}, {"paste", &StudioScript::paste},
        {"blank", &StudioScript::blank},       {"set", &StudioScript::setFields},
        {"do", &StudioScript::doOperation},    {"run", &StudioScript::runScreen},
        {"press", &StudioScript::pressButton}, {"stage", &StudioScript::stageScreen},
        {"assemble", &StudioScript::assemble}, {"export", &StudioScript::exportReport},
        {"csv", &StudioScript::exportCSV},     {"open", &StudioScript::openProject},
        {"save", &StudioScript::saveProject},  {"packet", &StudioScript::exportPacket},
        {"draft", &StudioScript::draft},       {"live", &StudioScript::presentLive}};
    const auto step = steps.find(name);
    if (step == steps.end()) {
        throw StepRefused("There is no step \"" + name + "\" in this version.");
    }
    return (this->*step->second)(argument);
}

Json StudioScript::importFile(const Json& argument) {
    if (!state_.handleIncomingImport(existing(argumentOf<std::string>(argument)))) {
        state_.confirmPendingImport();
    }
    if (state_.data.importError.get()) {
        throw StepRefused(*state_.data.importError.get());
    }
    return Json::object();
}

std::filesystem::path StudioScript::existing(const std::filesystem::path& named) const {
    for (const std::filesystem::path& folder : {files_.folder, files_.output}) {
        std::error_code unknown;
        if (std::filesystem::exists(folder / named, unknown)) {
            return folder / named;
        }
    }
    return named;
}

Json StudioScript::openProject(const Json& argument) {
    if (!state_.openProject(existing(argumentOf<std::string>(argument)))) {
        throw StepRefused(*state_.projectError.get());
    }
    return Json::object();
}

Json StudioScript::saveProject(const Json& argument) {
    const bool isNamed = argument.is_string();
    if (!isNamed && argument != Json::object()) {
        throw StepRefused(
            "The step \"save\" takes the name of a file, or {} for the place of the project.");
    }
    if (!isNamed && !state_.currentProjectURL.get()) {
        throw StepRefused("The step \"save\" needs the name of a file.");
    }
    const std::filesystem::path file = isNamed
                                           ? files_.output / argument.get<std::string>()
                                           : std::filesystem::path(*state_.currentProjectURL.get());
    if (!state_.saveProject(file)) {
        throw StepRefused(*state_.projectError.get());
    }
    Json gave = Json::object();
    gave["file"] = file.string();
    return gave;
}

Json StudioScript::paste(const Json& argument) {
    state_.importPastedData(argumentOf<std::string>(argument));
    if (state_.data.importError.get()) {
        throw StepRefused(*state_.data.importError.get());
    }
    return Json::object();
}

Json StudioScript::blank(const Json& argument) {
    if (!argument.is_object()) {
        throw StepRefused(
            "The step \"blank\" needs {}, or an object of name, rows, columns and headers.");
    }
    if (argument.empty()) {
        state_.beginBlankDataset();
        return Json::object();
    }
    OperationTable::find("createBlankDataset")->run(state_, {argument, std::nullopt});
    return Json::object();
}

Json StudioScript::setFields(const Json& argument) {
    if (!argument.is_object()) {
        throw StepRefused("The step \"set\" needs an object of field names and values.");
    }
    for (const auto& [name, value] : argument.items()) {
        AnyField* const field = state_.fields.find(name);
        if (!field) {
            throw StepRefused("There is no field \"" + name + "\".");
        }
        try {
            field->setJson(value);
        } catch (const RecordJsonError& error) {
            throw StepRefused("The field \"" + name + "\" " + error.what() + ".");
        }
    }
    return Json::object();
}

Json StudioScript::doOperation(const Json& argument) {
    const bool bare = argument.is_string();
    if (!bare && !(argument.is_object() && argument.size() == 1)) {
        throw StepRefused("The step \"do\" needs the name of one operation, with its arguments.");
    }
    const std::string name = bare ? argument.get<std::string>() : argument.begin().key();
    const Operation* operation = OperationTable::find(name);
    if (!operation) {
        throw StepRefused("There is no operation \"" + name + "\".");
    }
    operation->run(state_, {bare ? Json::object() : argument.begin().value(), std::nullopt});
    return Json::object();
}

Json StudioScript::runScreen(const Json& argument) {
    const auto id = argumentOf<StudioScreen>(argument);
    state_.selection.set(id);
    screens_.appear(id);
    Screen& screen = screens_.at(id);
    if (const std::optional<std::string> refusal = screen.run()) {
        throw StepRefused(*refusal);
    }
    Json gave = Json::object();
    gave["result"] = screen.result();
    return gave;
}

Json StudioScript::pressButton(const Json& argument) {
    const auto named = argumentOf<std::map<std::string, std::string>>(argument);
    if (named.size() != 1) {
        throw StepRefused("The step \"press\" needs one screen and the label of a button.");
    }
    const auto& [screen, label] = *named.begin();
    const auto id = argumentOf<StudioScreen>(Json(screen));
    state_.selection.set(id);
    screens_.appear(id);
    for (const Control& control : screens_.at(id).setup().controls) {
        const auto* button = std::get_if<ButtonControl>(&control);
        if (!button || button->label != label) {
            continue;
        }
        if (!button->isEnabled) {
            throw StepRefused("The button \"" + label + "\" cannot be pressed yet.");
        }
        button->press();
        return Json::object();
    }
    throw StepRefused("The form of " + std::string(title(id)) + " has no button \"" + label +
                      "\".");
}

Json StudioScript::stageScreen(const Json& argument) {
    const auto id = argumentOf<StudioScreen>(argument);
    screens_.appear(id);
    const ScreenContent content = screens_.content(id);
    if (content.findings.empty()) {
        throw StepRefused(content.gate ? ResultText::sentence(*content.gate)
                                       : "The screen shows no finding to stage.");
    }
    Json stagedItems = Json::array();
    for (const Finding& finding : content.findings) {
        ReportItem item = finding.item;
        if (finding.figure && files_.drawFigure) {
            item.figure = files_.drawFigure(*finding.figure);
        }
        state_.addToReport(item);
        stagedItems.push_back({{"title", item.title}, {"apaSummary", item.apaSummary}});
    }
    Json gave = Json::object();
    gave["stagedItems"] = std::move(stagedItems);
    return gave;
}

Json StudioScript::assemble(const Json&) {
    if (state_.reportItems->empty()) {
        throw StepRefused("Stage at least one result first.");
    }
    state_.assembleReport();
    return Json::object();
}

Json StudioScript::exportReport(const Json& argument) {
    const auto names = argumentOf<std::map<std::string, std::string>>(argument);
    const std::optional<std::vector<std::uint8_t>>& bytes = state_.reportRTFData.get();
    const std::optional<RichDocument> document = bytes ? decode(*bytes) : std::nullopt;
    if (!document) {
        throw StepRefused("Assemble the report first.");
    }
    Json files = Json::array();
    for (const auto& [format, name] : names) {
        const std::optional<ReportFormat> known = reportFormat(format);
        if (!known) {
            throw StepRefused("There is no report format \"" + format +
                              "\"; there are docx, pdf, rtf and md.");
        }
        const std::filesystem::path file = files_.output / name;
        if (const std::optional<std::string> failure = writeReport(*document, *known, file)) {
            throw StepRefused(*failure);
        }
        files.push_back(file.string());
    }
    Json gave = Json::object();
    gave["files"] = std::move(files);
    return gave;
}

Json StudioScript::exportCSV(const Json& argument) {
    const std::filesystem::path file = files_.output / argumentOf<std::string>(argument);
    if (!state_.exportDatasetCSV(file)) {
        throw StepRefused(*state_.projectError.get());
    }
    Json gave = Json::object();
    gave["files"] = Json::array({file.string()});
    return gave;
}

}  // namespace sorvane
