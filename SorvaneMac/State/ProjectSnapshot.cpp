#include "SorvaneMac/State/ProjectSnapshot.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/VariableClassifier.h"
#include "SorvaneCore/Project/JsonValueEnd.h"
#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane {

namespace {

constexpr auto itemsKey = "report_items";
constexpr auto notesKey = "researcher_notes";
constexpr auto documentKey = "report_rtfd";

template <typename T>
std::string folded(const T& value) {
    const std::string text = toJson(value).dump(-1, ' ', false, Json::error_handler_t::replace);
    return record_json::base64({text.begin(), text.end()});
}

/// Lists and objects that nest without end, or are empty by the million, would take a hundred times
/// their text in memory.
bool unfoldsToMuch(std::string_view text) {
    constexpr std::ptrdiff_t mostOpened = 2'000'000;
    const auto opens = [](char each) {
        return each == '[' || each == '{';
    };
    JsonValueEnd end;
    end.find(text);
    return end.isTooDeep() || std::ranges::count_if(text, opens) > mostOpened;
}

/// What a setting holds; the start value where it is absent or cannot be read.
template <typename T>
T unfolded(const std::map<std::string, std::string>& settings, const char* key) {
    const auto setting = settings.find(key);
    if (setting == settings.end()) {
        return T();
    }
    try {
        const std::vector<std::uint8_t> bytes = record_json::bytesOfBase64(setting->second);
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return unfoldsToMuch(text) ? T() : fromJson<T>(Json::parse(bytes));
    } catch (const RecordJsonError&) {
        return T();
    } catch (const Json::exception&) {
        return T();
    }
}

std::optional<std::vector<std::uint8_t>> unfoldedDocument(
    const std::map<std::string, std::string>& settings) {
    const auto setting = settings.find(documentKey);
    if (setting == settings.end()) {
        return std::nullopt;
    }
    try {
        std::vector<std::uint8_t> bytes = record_json::bytesOfBase64(setting->second);
        return decode(bytes) ? std::optional(std::move(bytes)) : std::nullopt;
    } catch (const RecordJsonError&) {
        return std::nullopt;
    }
}

void takeDecisions(DataVariable& variable, const ProjectVariableState& state) {
    variable.label = state.label;
    variable.assignedType = state.assignedType;
    variable.assignedConstruct = state.assignedConstruct;
    variable.scaleRange = state.scaleRange;
    if (variable.scaleRange) {
        for (std::optional<double>* bound :
             {&variable.scaleRange->minimum, &variable.scaleRange->maximum}) {
            *bound = *bound && std::isfinite(**bound) ? *bound : std::nullopt;
        }
    }
    variable.includeInReliability = state.includeInReliability;
    variable.includeInDescriptives = state.includeInDescriptives;
}

}  // namespace

std::map<std::string, std::string> ProjectSnapshot::settings() const {
    std::map<std::string, std::string> settings = plainSettings;
    if (reportRTFData && !reportRTFData->empty()) {
        settings[documentKey] = record_json::base64(*reportRTFData);
    }
    if (!reportItems.empty()) {
        settings[itemsKey] = folded(reportItems);
    }
    std::map<std::string, std::string> notes = researcherNotes;
    std::erase_if(notes,
                  [](const auto& note) { return UnicodeText::trimmed(note.second).empty(); });
    if (!notes.empty()) {
        settings[notesKey] = folded(notes);
    }
    return settings;
}

ProjectArchive ProjectSnapshot::archive() const {
    return ProjectArchive::of(dataset, {.transformationLog = transformationLog,
                                        .settings = settings(),
                                        .reverseCodedNames = reverseCodedItemNames,
                                        .unreliableItemNames = unreliableItemNames,
                                        .createdAt = takenAt,
                                        .modifiedAt = takenAt});
}

FoldedSettings FoldedSettings::of(const std::map<std::string, std::string>& settings) {
    return {.reportItems = unfolded<std::vector<ReportItem>>(settings, itemsKey),
            .researcherNotes = unfolded<std::map<std::string, std::string>>(settings, notesKey),
            .reportDocument = unfoldedDocument(settings)};
}

ImportedDataset datasetOf(const ProjectArchive& archive) {
    ImportedDataset dataset;
    dataset.name = archive.datasetName;
    dataset.headers = archive.headers;
    dataset.rows = archive.rows;
    dataset.variables = VariableClassifier().classify(dataset.headers, dataset.rows);
    std::map<std::string_view, const ProjectVariableState*> firstOfName;
    for (const ProjectVariableState& state : archive.variableStates) {
        firstOfName.try_emplace(state.name, &state);
    }
    for (DataVariable& variable : dataset.variables) {
        const auto state = firstOfName.find(variable.name);
        if (state != firstOfName.end()) {
            takeDecisions(variable, *state->second);
        }
    }
    dataset.importMetadata.missingValueMarkers = MissingValue::displayMarkers();
    return dataset;
}

}  // namespace sorvane
