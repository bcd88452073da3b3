#include "SorvaneMac/Screens/ImportCards.h"

#include <algorithm>

#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::ImportCards {

namespace {

/// More labelled values of one variable than this are counted and not listed.
constexpr std::size_t listedLabels = 12;

ScreenLink remedyLink(ImportCautionKind kind) {
    const bool isMagnitude = kind == ImportCautionKind::implausibleMagnitude;
    return {.label = isMagnitude ? "Set implausible values to missing"
                                 : "Read again with 8-byte references",
            .screen = StudioScreen::importData,
            .settings = {{"importRemedy", isMagnitude ? R"("setImplausibleToMissing")"
                                                      : R"("readAgainWithEightByteReferences")"}},
            .runs = true};
}

std::string labelledValues(const DataVariable& variable) {
    const std::vector<std::string> values = DatasetText::labelledValues(variable);
    std::string text;
    for (std::size_t at = 0; at < std::min(values.size(), listedLabels); ++at) {
        text += (at == 0 ? "" : ", ") + values[at];
    }
    if (values.size() > listedLabels) {
        text +=
            " and " + DatasetText::counted(static_cast<std::int64_t>(values.size() - listedLabels),
                                           "further value");
    }
    return text;
}

}  // namespace

std::optional<Card> cautions(const StudioState& state) {
    const auto& found = state.dataset().importMetadata.cautions;
    if (!found || found->empty()) {
        return std::nullopt;
    }
    Card card;
    card.title = "Before you analyze";
    card.subtitle = "What the file left in doubt";
    card.wide = true;
    for (const ImportCaution& caution : *found) {
        card.cautions.push_back(caution.message);
        card.links.push_back(remedyLink(caution.kind));
    }
    return card;
}

std::optional<Card> notes(const StudioState& state) {
    const auto& notes = state.dataset().importMetadata.notes;
    if (!notes || notes->empty()) {
        return std::nullopt;
    }
    return Card{.title = "Notes on the file",
                .subtitle = "What its reader found and did",
                .paragraphs = *notes};
}

std::optional<Card> variables(const StudioState& state) {
    const std::vector<DataVariable>& variables = state.dataset().variables;
    if (std::ranges::none_of(variables, &DatasetText::isLabelled)) {
        return std::nullopt;
    }
    ReportTable table;
    table.headers = {"Column", "Label", "Value labels", "Remarks"};
    for (const DataVariable& variable : variables) {
        table.rows.push_back({variable.name, variable.label.value_or(""), labelledValues(variable),
                              ResultText::running(variable.warnings)});
    }
    return Card{.title = "Labels and remarks",
                .subtitle = "What the file says of its variables",
                .tables = {std::move(table)},
                .wide = true};
}

}  // namespace sorvane::ImportCards
