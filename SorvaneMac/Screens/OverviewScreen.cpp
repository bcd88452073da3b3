#include "SorvaneMac/Screens/OverviewScreen.h"

#include <algorithm>
#include <boost/describe/enumerators.hpp>
#include <boost/mp11/algorithm.hpp>
#include <iterator>
#include <map>

#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

namespace {

/// A column with a larger share of missing cells is named.
constexpr double notableMissingShare = 0.10;
constexpr std::size_t namedAtMost = 4;
constexpr std::size_t listedAtMost = 8;

/// "a, b, c, d and 3 more".
std::string named(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t at = 0; at < std::min(names.size(), namedAtMost); ++at) {
        text += (at == 0 ? "" : ", ") + names[at];
    }
    if (names.size() > namedAtMost) {
        text += " and " + ResultText::count(static_cast<std::int64_t>(names.size() - namedAtMost)) +
                " more";
    }
    return text;
}

bool isGivenRole(const DataVariable& variable) {
    return variable.assignedType == VariableKind::outcome ||
           isReliabilityEligible(variable.assignedType);
}

}  // namespace

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
        {"Variables", ResultText::count(dataset.columnCount()), "columns"},
        {"Missing",
         DatasetText::share(DatasetText::missingCells(dataset),
                            dataset.rowCount() * dataset.columnCount()),
         "of all cells"},
        {"Scale items", ResultText::count(DatasetText::itemCount(dataset)), "in the item set"},
        {"Findings", ResultText::count(std::ssize(state_.reportItems.get())),
         "staged for the report"}};
    content.cards = {nextCard(),    attentionCard(), rolesCard(),
                     remarksCard(), findingsCard(),  logCard()};
    return content;
}

Card OverviewScreen::nextCard() const {
    Card card;
    card.title = "What to do next";
    card.wide = true;
    const std::int64_t staged = std::ssize(state_.reportItems.get());
    const std::vector<DataVariable>& variables = state_.dataset().variables;
    const auto& document = state_.reportRTFData.get();
    if (document && !document->empty()) {
        card.paragraphs = {
            "The report is assembled. Read it once more on Findings, then export it. "
            "A finding staged since then comes in when you assemble again."};
        card.links = {{"Read the report", StudioScreen::findings},
                      {"Export it", StudioScreen::export_}};
    } else if (staged > 0) {
        card.paragraphs = {DatasetText::counted(staged, "finding") +
                           (staged == 1 ? " is" : " are") +
                           " staged. Add what is still missing, then assemble the report on "
                           "Findings."};
        card.links = {{"Assemble the report", StudioScreen::findings}};
    } else if (std::none_of(variables.begin(), variables.end(), isGivenRole)) {
        card.paragraphs = {
            "No variable is an outcome or a scale item yet. Say what each variable "
            "is: every list of variables in the program follows the roles."};
        card.links = {{"Give roles", StudioScreen::variableTypes},
                      {"See what was recognised", StudioScreen::instrumentMap}};
    } else {
        card.paragraphs = {
            "Check the roles once, then look at the evidence and add to the report "
            "what you want to tell."};
        card.links = {{"Check the roles", StudioScreen::variableTypes}};
        if (DatasetText::itemCount(state_.dataset()) > 1) {
            card.links.push_back({"Look at the scale", StudioScreen::scalesReliability});
        }
        card.links.push_back({"Describe a variable", StudioScreen::descriptives});
    }
    return card;
}

Card OverviewScreen::attentionCard() const {
    Card card;
    card.title = "Worth a look";
    card.subtitle = "What was noticed when the table came in";
    card.evidence = {importLine(), missingLine()};
    card.links = {{"Import Data", StudioScreen::importData},
                  {"Data Preview", StudioScreen::dataPreview}};
    return card;
}

EvidenceLine OverviewScreen::importLine() const {
    const std::vector<ImportReadinessIssue>& issues = state_.dataset().importMetadata.issues;
    if (issues.empty()) {
        return {EvidenceTone::met, "Nothing had to be repaired",
                "Names and rows stand as they were in the source."};
    }
    return {EvidenceTone::caution,
            DatasetText::counted(std::ssize(issues), "repair") + " on import",
            issues.front().message};
}

EvidenceLine OverviewScreen::missingLine() const {
    const auto rows = static_cast<double>(state_.dataset().rowCount());
    std::vector<std::string> notable;
    for (const DataVariable& variable : state_.dataset().variables) {
        if (static_cast<double>(variable.missingCount) > notableMissingShare * rows) {
            notable.push_back(variable.name);
        }
    }
    if (notable.empty()) {
        return {EvidenceTone::met, DatasetText::missing(state_.dataset()),
                "No column lacks more than a tenth of its cells."};
    }
    return {EvidenceTone::caution,
            DatasetText::counted(std::ssize(notable), "column") +
                (notable.size() == 1 ? " lacks" : " lack") + " more than a tenth of the cells",
            named(notable)};
}

Card OverviewScreen::remarksCard() const {
    std::vector<std::string> order;
    std::map<std::string, std::vector<std::string>> columnsOf;
    for (const DataVariable& variable : state_.dataset().variables) {
        for (const std::string& warning : variable.warnings) {
            std::vector<std::string>& columns = columnsOf[warning];
            if (columns.empty()) {
                order.push_back(warning);
            }
            columns.push_back(variable.name);
        }
    }
    Card card;
    card.title = "Remarks on the roles";
    card.subtitle = "From the import; a role that you gave yourself stands above them";
    for (const std::string& warning : order) {
        card.passages.push_back({named(columnsOf[warning]), warning, false});
    }
    if (order.empty()) {
        card.paragraphs = {"None."};
    }
    card.links = {{"Instrument Map", StudioScreen::instrumentMap}};
    return card;
}

Card OverviewScreen::rolesCard() const {
    Card card;
    card.title = "Variables by role";
    card.subtitle = "As the analyses read them";
    ReportTable table;
    table.headers = {"Role", "Variables"};
    boost::mp11::mp_for_each<boost::describe::describe_enumerators<VariableKind>>(
        [this, &table](auto enumerator) {
            const auto& variables = state_.dataset().variables;
            const auto count = std::count_if(
                variables.begin(), variables.end(),
                [&](const DataVariable& each) { return each.assignedType == enumerator.value; });
            if (count > 0) {
                table.rows.push_back(
                    {std::string(displayName(enumerator.value)), ResultText::count(count)});
            }
        });
    card.tables = {std::move(table)};
    card.links = {{"Variable Types", StudioScreen::variableTypes}};
    return card;
}

Card OverviewScreen::findingsCard() const {
    Card card;
    card.title = "Staged findings";
    card.subtitle = "In the order of the report";
    const std::vector<ReportItem>& items = state_.reportItems.get();
    for (std::size_t at = 0; at < std::min(items.size(), listedAtMost); ++at) {
        card.paragraphs.push_back(ResultText::count(static_cast<std::int64_t>(at + 1)) + ". " +
                                  items[at].title);
    }
    if (items.size() > listedAtMost) {
        card.paragraphs.push_back(
            "And " + ResultText::count(static_cast<std::int64_t>(items.size() - listedAtMost)) +
            " more.");
    }
    if (items.empty()) {
        card.paragraphs = {"Nothing yet. \"Add to report\" below a result stages it."};
    }
    card.links = {{"Findings", StudioScreen::findings}};
    return card;
}

Card OverviewScreen::logCard() const {
    Card card;
    card.title = "What was done to this table";
    card.paragraphs = state_.data.transformationLog.get();
    card.links = {{"Technical Appendix", StudioScreen::technicalAppendix}};
    return card;
}

Guide OverviewScreen::guide() const {
    return {.answers = "Where does this study stand, and what comes next?",
            .needs = "A dataset: import a file, paste a table, or create a blank grid.",
            .doNotClaim = {"Do not report a figure from the overview; use the screen that "
                           "computes it, with its cautions."}};
}

}  // namespace sorvane
