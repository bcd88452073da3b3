#include "SorvaneMac/Screens/OverviewScreen.h"

#include <boost/describe/enumerators.hpp>
#include <boost/mp11/algorithm.hpp>

#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

SetupForm OverviewScreen::setup() {
    SetupForm form;
    form.title = "Overview";
    form.controls = {
        NoteControl{"Nothing to set here. The screens on the left follow the order of the work: "
                    "project, instrument, evidence, report.",
                    false}};
    return form;
}

ScreenContent OverviewScreen::content() const {
    ScreenContent content;
    content.title = "Overview";
    const ImportedDataset& dataset = state_.dataset();
    if (!state_.hasData()) {
        content.gate = ResultText::noDataGate();
        return content;
    }
    content.subtitle = dataset.name;
    content.tiles = {
        {"Rows", ResultText::count(dataset.rowCount()), "cases in the table"},
        {"Columns", ResultText::count(dataset.columnCount()), "variables"},
        {"Missing",
         DatasetText::share(dataset.importMetadata.missingCellCount,
                            dataset.importMetadata.totalCellCount),
         "of all cells"},
        {"Scale items", ResultText::count(DatasetText::itemCount(dataset)), "in the item set"},
        {"Findings", ResultText::count(static_cast<std::int64_t>(state_.reportItems->size())),
         "staged for the report"}};
    content.cards = {rolesCard(), nextCard(), logCard()};
    return content;
}

Card OverviewScreen::rolesCard() const {
    Card card;
    card.title = "Variables by role";
    card.subtitle = "As the analyses read them";
    ReportTable table;
    table.headers = {"Role", "Variables"};
    boost::mp11::mp_for_each<boost::describe::describe_enumerators<VariableKind>>(
        [this, &table](auto enumerator) {
            std::int64_t count = 0;
            for (const DataVariable& variable : state_.dataset().variables) {
                count += variable.assignedType == enumerator.value ? 1 : 0;
            }
            if (count > 0) {
                table.rows.push_back(
                    {std::string(displayName(enumerator.value)), ResultText::count(count)});
            }
        });
    card.tables = {std::move(table)};
    return card;
}

Card OverviewScreen::logCard() const {
    Card card;
    card.title = "What was done to this table";
    card.paragraphs = state_.data.transformationLog.get();
    card.wide = true;
    return card;
}

Card OverviewScreen::nextCard() const {
    Card card;
    card.title = "What comes next";
    card.paragraphs = {
        "1. Check the roles on Instrument Map and Variable Types; every list of variables follows "
        "them.",
        "2. Look at Scale & Reliability before you use a scale score.",
        "3. Describe and test under Evidence; add what you want to report.",
        "4. Assemble, edit and export the report on Findings."};
    return card;
}

Guide OverviewScreen::guide() const {
    return {.answers = "What is in this project, and what has been done to it so far?",
            .needs = "A dataset: import a file, paste a table, or create a blank grid.",
            .doNotClaim = {"Do not report a figure from the overview; use the screen that "
                           "computes it, with its cautions."}};
}

}  // namespace sorvane
