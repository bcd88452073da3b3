#include "SorvaneMac/Screens/Structural/StructuralModelCheck.h"

#include <algorithm>

#include "SorvaneMac/State/JoinedText.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::StructuralModelCheck {

namespace {

constexpr std::string_view syntaxHelp =
    "Check the syntax and that every name matches a numeric field. Use =~ for factors, ~ for "
    "regressions, ~~ for (co)variances.";

Gate unknownFields(std::vector<std::string> names, const ImportedDataset& dataset) {
    const auto isThere = [&dataset](const std::string& name) {
        return dataset.columnIndex(name).has_value();
    };
    if (std::ranges::all_of(names, isThere)) {
        return {.title = "Field(s) without numbers to analyze",
                .lead = "",
                .text = "Not numeric, or set aside in Variable Types: " + joinedText(names) +
                        ". Fix before fitting."};
    }
    std::erase_if(names, isThere);
    return {.title = "Unknown field(s)",
            .lead = "",
            .text = "Not in the dataset: " + joinedText(names) + ". Fix before fitting."};
}

Gate didNotParse(const SEMSyntaxError& error) {
    const std::string message = error.what();
    return {.title = "Model did not parse",
            .lead = "",
            .text = message + (message.ends_with('.') ? " " : ". ") + std::string(syntaxHelp)};
}

}  // namespace

Reading read(std::string_view text, const ImportedDataset& dataset) {
    const std::vector<std::string> numeric = VariableLists::numericNames(dataset);
    try {
        SEMParsedSpec parsed = SEMModelSpecParser::parse(text);
        std::vector<std::string> unknown = SEMModel::unknownNames(parsed, numeric);
        if (!unknown.empty()) {
            return {.model = std::nullopt, .gate = unknownFields(std::move(unknown), dataset)};
        }
        return {.model = SEMModel::build(std::move(parsed), numeric), .gate = std::nullopt};
    } catch (const SEMSyntaxError& error) {
        return {.model = std::nullopt, .gate = didNotParse(error)};
    }
}

}  // namespace sorvane::StructuralModelCheck
