#include "SorvaneMac/Screens/ImportDataScreen.h"

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DataPreparation.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/ImportCards.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

namespace {

/// More issues than this are counted and not listed.
constexpr std::size_t listedIssues = 30;
constexpr double mostDraftRows = 10000;
constexpr double mostDraftColumns = 200;

std::vector<std::string> columnRow(const ImportColumnSummary& column) {
    const std::optional<NumericSummary>& numbers = column.numericSummary;
    const int decimals =
        numbers ? ReportDecimals::ofSample(numbers->mean, numbers->maximum - numbers->minimum) : 0;
    const auto figure = [&numbers, decimals](double NumericSummary::*part) {
        return numbers ? svFigure((*numbers).*part, decimals) : std::string("--");
    };
    return {column.header,
            ResultText::count(column.numericCount),
            ResultText::count(column.textCount),
            ResultText::count(column.missingCount),
            ResultText::count(column.uniqueNonMissingCount),
            figure(&NumericSummary::minimum),
            figure(&NumericSummary::maximum),
            figure(&NumericSummary::mean)};
}

}  // namespace

ImportDataScreen::ImportDataScreen(StudioState& state)
    : importRemedy(state.fields, "importRemedy"), state_(state) {}

SetupForm ImportDataScreen::setup() {
    DatasetFields& data = state_.data;
    const auto setCount = [](Field<std::int64_t>& field) {
        return [&field](double value) {
            field.set(static_cast<std::int64_t>(value));
        };
    };
    SetupForm form;
    form.title = "Import Data";
    form.controls = {
        HeadingControl{"BLANK GRID"},
        NoteControl{"Start with an empty grid and type the data in.", false},
        TextControl{"Name", "Untitled dataset", data.datasetDraftName.get(),
                    [&data](const std::string& text) {
                        data.datasetDraftName.set(text);
                    }},
        NumberControl{.label = "Rows",
                      .minimum = 1.0,
                      .maximum = mostDraftRows,
                      .value = static_cast<double>(data.datasetDraftRows.get()),
                      .valueText = ResultText::count(data.datasetDraftRows.get()),
                      .set = setCount(data.datasetDraftRows)},
        NumberControl{.label = "Columns",
                      .minimum = 1.0,
                      .maximum = mostDraftColumns,
                      .value = static_cast<double>(data.datasetDraftColumns.get()),
                      .valueText = ResultText::count(data.datasetDraftColumns.get()),
                      .set = setCount(data.datasetDraftColumns)},
        ButtonControl{.label = "Create blank grid", .press = [this] {
                          state_.replaceGuarded([this] { state_.beginBlankDataset(); });
                      }}};
    DataPreparation::addUndo(form, state_);
    return form;
}

std::optional<std::string> ImportDataScreen::run() {
    const ImportRemedy remedy = importRemedy.get();
    importRemedy.set(ImportRemedy::none);
    std::optional<std::string> lacking;
    if (remedy == ImportRemedy::setImplausibleToMissing) {
        lacking = state_.implausibleLacks();
        state_.setImplausibleToMissing();
    } else if (remedy == ImportRemedy::readAgainWithEightByteReferences) {
        lacking = state_.readingAgainLacks();
        state_.replaceGuarded([this] { state_.readAgainWithEightByteReferences(); });
    }
    return lacking;
}

ScreenContent ImportDataScreen::content() const {
    ScreenContent content;
    content.title = "Import Data";
    content.subtitle = "Files are read on this machine. A failed import changes nothing.";
    if (!state_.hasData()) {
        return content;
    }
    const ImportReadinessMetadata& metadata = state_.dataset().importMetadata;
    content.tiles = {
        {"Rows", ResultText::count(metadata.rowCount), "kept from the source"},
        {"Columns", ResultText::count(metadata.columnCount), "with one name each"},
        {"Missing cells", ResultText::count(metadata.missingCellCount),
         DatasetText::share(metadata.missingCellCount, metadata.totalCellCount) + " of all cells"},
        {"Repairs", ResultText::count(static_cast<std::int64_t>(metadata.issues.size())),
         metadata.issues.empty() ? "nothing to repair" : "listed below"}};
    for (std::optional<Card> card : {ImportCards::cautions(state_), ImportCards::notes(state_)}) {
        if (card) {
            content.cards.push_back(*std::move(card));
        }
    }
    content.cards.push_back(issuesCard());
    content.cards.push_back(markersCard());
    if (std::optional<Card> card = ImportCards::variables(state_)) {
        content.cards.push_back(*std::move(card));
    }
    content.cards.push_back(columnsCard());
    return content;
}

Card ImportDataScreen::issuesCard() const {
    const std::vector<ImportReadinessIssue>& issues = state_.dataset().importMetadata.issues;
    Card card;
    card.title = "What was found and repaired";
    card.subtitle = state_.dataset().name;
    for (std::size_t at = 0; at < issues.size() && at < listedIssues; ++at) {
        card.evidence.push_back({issues[at].severity == ImportReadinessSeverity::error
                                     ? EvidenceTone::violated
                                     : EvidenceTone::caution,
                                 issues[at].message, ""});
    }
    if (issues.empty()) {
        card.evidence.push_back({EvidenceTone::met, "The table is rectangular",
                                 "Every column has a name of its own and every row as many cells "
                                 "as there are columns."});
    } else if (issues.size() > listedIssues) {
        card.paragraphs = {
            "There are " +
            ResultText::count(static_cast<std::int64_t>(issues.size() - listedIssues)) +
            " more of the same kind."};
    }
    return card;
}

Card ImportDataScreen::markersCard() const {
    Card card;
    card.title = "Missing markers observed";
    card.subtitle = "Cells that hold one of these count as missing";
    const std::map<std::string, std::int64_t>& observed =
        state_.dataset().importMetadata.observedMissingMarkers;
    if (observed.empty()) {
        card.paragraphs = {"No cell is missing."};
        return card;
    }
    ReportTable table;
    table.headers = {"Marker", "Cells"};
    for (const auto& [marker, count] : observed) {
        table.rows.push_back({marker, ResultText::count(count)});
    }
    card.tables = {std::move(table)};
    return card;
}

Card ImportDataScreen::columnsCard() const {
    Card card;
    card.title = "Columns";
    card.wide = true;
    ReportTable table;
    table.headers = {"Column",   "Numbers", "Texts",   "Missing",
                     "Distinct", "Minimum", "Maximum", "Mean"};
    for (const ImportColumnSummary& column : state_.dataset().importMetadata.columnSummaries) {
        table.rows.push_back(columnRow(column));
    }
    card.tables = {std::move(table)};
    return card;
}

Guide ImportDataScreen::guide() const {
    return {.answers = "How does a file come in, and what was changed on the way?",
            .needs = "A data file: " + std::string(SpreadsheetImporter::acceptedFormats) +
                     " Numbers documents and survey packages are read as well. A table without "
                     "names of its own has them in its first row. Or a table copied from a "
                     "spreadsheet.",
            .doNotClaim = {"Do not treat a repaired table as the file that you were given; keep "
                           "the source.",
                           "Do not report how many cells were missing before you know what each "
                           "marker meant."}};
}

}  // namespace sorvane
