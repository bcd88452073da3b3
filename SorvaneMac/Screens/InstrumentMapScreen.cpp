#include "SorvaneMac/Screens/InstrumentMapScreen.h"

#include <algorithm>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/ImportCards.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/State/JoinedText.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using Category = ScaleItemClassification::Category;

std::string_view categoryName(Category category) {
    switch (category) {
        case Category::likelyScale:
            return "Likely scale item";
        case Category::likelyInformational:
            return "Likely informational";
        case Category::likelyIDMetadata:
            return "Likely ID or metadata";
        case Category::unclear:
            break;
    }
    return "Unclear";
}

}  // namespace

void InstrumentMapScreen::seed() {
    const std::vector<ScaleItemClassification>& verdicts = state_.scale.scaleClassifications.get();
    const bool fits = std::ranges::equal(verdicts, state_.dataset().headers, {},
                                         &ScaleItemClassification::columnName);
    if (!fits) {
        state_.classifyAndSeedScaleItems(false);
    }
}

SetupForm InstrumentMapScreen::setup() {
    SetupForm form;
    form.title = "Instrument Map";
    form.controls = {
        HeadingControl{"ITEM SET"},
        NoteControl{"The items of the set are what Scale & Reliability analyzes. Check them in the "
                    "table, or take every column that looks like a Likert item at once.",
                    false},
        ButtonControl{.label = "Select Likert items",
                      .isEnabled = state_.hasData(),
                      .isPrimary = true,
                      .press =
                          [this] {
                              state_.selectLikertCandidateItemsForReliability();
                          }},
        NoteControl{"To change what a column is, go to Variable Types.", false}};
    return form;
}

ScreenContent InstrumentMapScreen::content() const {
    ScreenContent content;
    content.title = "Instrument Map";
    if (!state_.hasData()) {
        content.gate = ResultText::noDataGate();
        return content;
    }
    content.subtitle =
        "What each column seems to be, judged from its name, its label and its values. You decide.";
    const auto number = [this](Category category) {
        std::int64_t found = 0;
        for (const ScaleItemClassification& verdict : state_.scale.scaleClassifications.get()) {
            found += verdict.category == category ? 1 : 0;
        }
        return ResultText::count(found);
    };
    content.tiles = {
        {"In the item set", ResultText::count(DatasetText::itemCount(state_.dataset())),
         "of " + ResultText::count(state_.dataset().columnCount()) + " columns"},
        {"Likely scale items", number(Category::likelyScale), ""},
        {"Likely informational", number(Category::likelyInformational), ""},
        {"ID or metadata", number(Category::likelyIDMetadata), ""},
        {"Unclear", number(Category::unclear), ""}};
    for (std::optional<Card> card : {ImportCards::cautions(state_), importCard()}) {
        if (card) {
            content.cards.push_back(*std::move(card));
        }
    }
    return content;
}

std::optional<Card> InstrumentMapScreen::importCard() const {
    std::optional<Card> notes = ImportCards::notes(state_);
    if (notes) {
        // In one paragraph, so that the table keeps the room.
        notes->subtitle.clear();
        notes->paragraphs = {joinedText(notes->paragraphs, " ")};
        notes->links = {{.label = "Import Data", .screen = StudioScreen::importData}};
    }
    return notes;
}

std::vector<InstrumentMapScreen::Row> InstrumentMapScreen::rows() const {
    std::vector<Row> rows;
    const VariableLists::List items = VariableLists::reliabilityVariables(state_.dataset());
    for (const DataVariable& variable : state_.dataset().variables) {
        Row row{.id = variable.id,
                .name = variable.name,
                .label = variable.label.value_or(""),
                .inferredRole = std::string(displayName(variable.inferredType)),
                .category = std::string(categoryName(Category::unclear)),
                .probability = "--",
                .reasons = "",
                .remarks = joinedText(variable.warnings, " "),
                .isIncluded = VariableLists::contains(items, variable.name),
                .canBeIncluded = isReliabilityEligible(variable.assignedType) ||
                                 VariableLists::isNumericForAnalysis(variable)};
        if (const ScaleItemClassification* verdict = state_.classification(variable.name)) {
            row.category = std::string(categoryName(verdict->category));
            row.probability = NumberText::fixed(100.0 * verdict->scaleProbability, 0) + "%";
            row.reasons = joinedText(verdict->reasons, "; ");
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

Guide InstrumentMapScreen::guide() const {
    return {.answers = "Which columns are the items of a scale, and which describe the cases?",
            .needs = "A dataset. Question wording in the labels makes the judgment better.",
            .doNotClaim = {"Do not claim that items form a scale because they look alike; that is "
                           "a matter of theory and of evidence.",
                           "Do not leave a column in the item set only because it was taken in "
                           "by itself."}};
}

}  // namespace sorvane
