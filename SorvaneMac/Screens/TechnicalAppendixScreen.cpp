#include "SorvaneMac/Screens/TechnicalAppendixScreen.h"

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneCore/SorvaneEngine.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/MethodPreview.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/State/JoinedText.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

template <typename Names>
std::string listed(const Names& names) {
    return names.empty() ? "None" : joinedText(names);
}

std::vector<std::string> numbered(const std::vector<std::string>& lines) {
    std::vector<std::string> made;
    for (const std::string& line : lines) {
        made.push_back(ResultText::count(static_cast<std::int64_t>(made.size() + 1)) + ". " + line);
    }
    return made;
}

std::string sourceName(ImportSourceKind kind) {
    switch (kind) {
        case ImportSourceKind::csv:
            return "Delimited text";
        case ImportSourceKind::xlsx:
            return "Workbook";
        case ImportSourceKind::blank:
            return "A grid typed here";
        case ImportSourceKind::unknown:
            break;
    }
    return "Not known";
}

}  // namespace

SetupForm TechnicalAppendixScreen::setup() {
    SetupForm form;
    form.title = "Technical Appendix";
    form.controls = {
        NoteControl{"Nothing to set here. The page says what stands behind the findings, so that "
                    "another researcher can repeat them.",
                    false},
        NoteControl{"The record of a single analysis is on its own screen, under Guide, Reproduce.",
                    false}};
    return form;
}

ScreenContent TechnicalAppendixScreen::content() const {
    ScreenContent content;
    content.title = "Technical Appendix";
    content.subtitle = "What another researcher needs to get the same figures";
    if (!state_.hasData()) {
        content.gate = ResultText::noDataGate();
        content.cards = {previewCard(), engineCard()};
        return content;
    }
    content.cards = {previewCard(), sourceCard(), logCard(),     missingCard(),
                     scaleCard(),   engineCard(), findingsCard()};
    return content;
}

Card TechnicalAppendixScreen::previewCard() const {
    previewed_ = state_.activeMethodFile();
    Card card;
    card.title = "Method file preview";
    card.subtitle = std::string(MethodPreview::purpose);
    card.facts = MethodPreview::rows(*previewed_);
    return card;
}

Card TechnicalAppendixScreen::sourceCard() const {
    const ImportedDataset& dataset = state_.dataset();
    const ImportReadinessMetadata& import = dataset.importMetadata;
    Card card;
    card.title = "Data";
    card.facts = {
        {"Table", dataset.name},
        {"Read from", sourceName(import.sourceKind) +
                          (import.worksheetName ? ", sheet " + *import.worksheetName : "")},
        {"Size", DatasetText::size(dataset)},
        {"Repairs", import.issues.empty()
                        ? "None"
                        : DatasetText::counted(std::ssize(import.issues), "repair") +
                              "; Import Data lists them"}};
    return card;
}

Card TechnicalAppendixScreen::logCard() const {
    Card card;
    card.title = "What was done to the table";
    card.subtitle = "In this order, from the import on";
    card.paragraphs = numbered(state_.data.transformationLog.get());
    card.wide = true;
    return card;
}

Card TechnicalAppendixScreen::missingCard() const {
    const ImportReadinessMetadata& import = state_.dataset().importMetadata;
    std::vector<std::string> seen;
    for (const auto& [marker, count] : import.observedMissingMarkers) {
        seen.push_back(marker + " × " + ResultText::count(count));
    }
    Card card;
    card.title = "Missing data";
    card.facts = {
        {"Share", DatasetText::missing(state_.dataset())},
        {"Read as missing", listed(import.missingValueMarkers) + "; letters in any case"},
        {"Seen", listed(seen)},
        {"Scale", std::string(rawValue(state_.scale.reliabilityMissingDataRule.get()))},
        {"Elsewhere", "Cases without a value that the analysis needs are left out of it."}};
    return card;
}

Card TechnicalAppendixScreen::scaleCard() const {
    const ScaleFields& scale = state_.scale;
    Card card;
    card.title = "Scale";
    const std::string& construct = scale.constructName.get();
    card.facts = {
        {"Construct", construct.empty() ? "Unnamed" : construct},
        {"Items",
         listed(VariableLists::names(VariableLists::reliabilityVariables(state_.dataset())))},
        {"Reverse-coded", listed(scale.reverseCodedItemNames.get())},
        {"Score", std::string(displayName(scale.scaleScoreMethod.get()))}};
    if (scale.reliabilityMissingDataRule.get() != ReliabilityMissingDataRule::listwiseDeletion) {
        card.facts.push_back(
            {"Answered at least",
             NumberText::fixed(100.0 * scale.minimumItemCompletion.get(), 0) + "% of the items"});
    }
    return card;
}

Card TechnicalAppendixScreen::engineCard() const {
    Card card;
    card.title = "Engine";
    card.facts = {
        {"Version", std::string(SorvaneEngine::version)},
        {"Where", "All figures are computed on this machine, by the program's own procedures."},
        {"Conventions",
         "Sample variances divide by n − 1 unless a result says otherwise. Sentences call a result "
         "significant at p < .05. Intervals are at 95% unless a screen sets another level."}};
    return card;
}

Card TechnicalAppendixScreen::findingsCard() const {
    Card card;
    card.title = "Staged findings";
    card.subtitle = "As they go into the report";
    card.wide = true;
    for (const ReportItem& item : state_.reportItems.get()) {
        card.passages.push_back(
            {item.title, item.caution.value_or("Staged without a caution."), false});
    }
    if (card.passages.empty()) {
        card.paragraphs = {"Nothing is staged yet."};
    }
    card.links = {{"Findings", StudioScreen::findings}};
    return card;
}

Guide TechnicalAppendixScreen::guide() const {
    return {.answers = "Which data, roles, rules and versions stand behind the findings?",
            .needs = "A dataset; staged findings, where they are to be listed.",
            .doNotClaim = {"Do not leave out the rule for missing data.",
                           "Do not claim that an analysis can be repeated without the data it was "
                           "run on: a method file holds none."}};
}

Json TechnicalAppendixScreen::result() const {
    return toJson(state_.activeMethodFile());
}

}  // namespace sorvane
