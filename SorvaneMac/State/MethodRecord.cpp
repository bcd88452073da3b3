#include <iterator>

#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneCore/Project/WholeFile.h"
#include "SorvaneCore/SorvaneEngine.h"
#include "SorvaneMac/State/JoinedText.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

constexpr int completionDecimals = 2;

std::vector<std::uint8_t> fileBytes(const MethodFile& record) {
    const std::string text = toJson(record).dump(2, ' ', false, Json::error_handler_t::replace);
    std::vector<std::uint8_t> bytes(text.begin(), text.end());
    bytes.push_back('\n');
    return bytes;
}

}  // namespace

std::vector<std::string> StudioState::activeVariablesUsed() const {
    const auto present = [this](std::initializer_list<const Field<VariableName>*> selections) {
        std::vector<std::string> names;
        for (const Field<VariableName>* each : selections) {
            if (dataset().variable(each->get().name)) {
                names.push_back(each->get().name);
            }
        }
        return names;
    };
    switch (selection.get()) {
        case StudioScreen::scalesReliability:
            return VariableLists::names(VariableLists::reliabilityVariables(dataset()));
        case StudioScreen::groupPatterns:
            return present({&selectedANOVAOutcomeName, &selectedANOVAGroupName});
        case StudioScreen::descriptives:
            return present({&selectedDescriptiveVariableName, &selectedDescriptiveGroupName});
        default:
            return {};
    }
}

std::map<std::string, std::string> StudioState::methodOptions() const {
    const auto nameIfPresent = [this](const Field<VariableName>& chosen) {
        return dataset().variable(chosen->name) ? chosen->name : std::string();
    };
    return {
        {"screen", std::string(rawValue(selection.get()))},
        {"scale_score", scale.scaleScoreMethod.get() == ScaleScoreMethod::mean ? "mean" : "sum"},
        {"minimum_item_completion",
         NumberText::fixed(scale.minimumItemCompletion.get(), completionDecimals)},
        {"reverse_coded_items", joinedText(scale.reverseCodedItemNames.get())},
        {"transformation_count", NumberText::integer(std::ssize(data.transformationLog.get()))},
        {"descriptive_variable", selectedDescriptiveVariableName->name},
        {"descriptive_group", nameIfPresent(selectedDescriptiveGroupName)},
        {"anova_outcome", nameIfPresent(selectedANOVAOutcomeName)},
        {"anova_group", nameIfPresent(selectedANOVAGroupName)}};
}

MethodFile StudioState::activeMethodFile() const {
    using namespace std::chrono;  // NOLINT(google-build-using-namespace)
    return {.id = Uuid::fresh(),
            .analysisType = std::string(methodName(selection.get())),
            .variablesUsed = activeVariablesUsed(),
            .missingDataRule = std::string(rawValue(scale.reliabilityMissingDataRule.get())),
            .options = methodOptions(),
            .timestamp = floor<seconds>(system_clock::now()),
            .engineVersion = std::string(SorvaneEngine::version)};
}

bool StudioState::saveMethodFile(const std::filesystem::path& file, const MethodFile& record) {
    std::error_code unknown;
    const std::filesystem::path target =
        std::filesystem::is_directory(file, unknown) ? file / record.defaultFilename() : file;
    const std::optional<std::string> failure = replaceFile(target, fileBytes(record));
    projectError.set(std::nullopt);
    saveStatusMessage.set(failure ? "Save failed: " + *failure + "."
                                  : "Saved " + fileName(target) + ".");
    return !failure;
}

}  // namespace sorvane
