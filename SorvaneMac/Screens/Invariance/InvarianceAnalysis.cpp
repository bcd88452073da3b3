#include "SorvaneMac/Screens/Invariance/InvarianceAnalysis.h"

#include "SorvaneCore/Models/Structural/InvarianceWording.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Invariance/InvarianceReport.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/TestReport.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using VariableLists::anovaGroupingVariables;
using VariableLists::numericVariables;

/// With fewer a factor is not identified within each group.
constexpr std::size_t fewestItems = 3;

constexpr std::string_view note =
    "Maximum likelihood with means; chi-square is n times the minimum of the fit function, and "
    "RMSEA is multiplied by the root of the number of groups.";

class Invariance final : public BackgroundAnalysis<InvarianceFields, InvarianceResult> {
public:
    using BackgroundAnalysis::BackgroundAnalysis;

    std::string subtitle() const override {
        return "Configural, metric and scalar models of one factor, compared step by step "
               "between groups.";
    }

    void addControls(SetupForm& form) override {
        using namespace FormControls;  // NOLINT(google-build-using-namespace)
        const ImportedDataset& dataset = state_.dataset();
        const VariableLists::List numeric = numericVariables(dataset);
        form.controls.emplace_back(
            variablePicker("Groups to compare", fields_.invGroup, anovaGroupingVariables(dataset)));
        form.controls.emplace_back(HeadingControl{"ONE FACTOR"});
        form.controls.emplace_back(withUnavailable(
            variableCheckList("Items of the factor", fields_.invItems,
                              VariableLists::without(numeric, {fields_.invGroup->name})),
            fields_.invItems.get(), numeric));
    }

    std::string runLabel() const override { return "Run invariance"; }

    std::optional<Gate> gate() const override {
        if (auto gone = SelectionGates::goneColumn(
                fields_.invGroup, anovaGroupingVariables(state_.dataset()), "grouping columns")) {
            return gone;
        }
        if (auto gone = SelectionGates::goneColumn(
                fields_.invItems, numericVariables(state_.dataset()), "numeric columns")) {
            return gone;
        }
        if (fields_.invGroup->isBlank()) {
            return Gate{
                .title = "Set the groups to compare",
                .lead = "",
                .text =
                    "Set a grouping column in the Setup panel. If none is offered, give one the "
                    "role Independent / group in Variable Types."};
        }
        if (items().size() < fewestItems) {
            return Gate{
                .title = "Select at least three items",
                .lead = "",
                .text =
                    "Check three or more numeric items of one factor in the Setup panel; with "
                    "fewer, a one-factor model has no solution of its own in a group."};
        }
        return std::nullopt;
    }

    std::string selection() const override {
        return ResultText::listed(items()) + " by " + fields_.invGroup->name;
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether a scale works alike in the groups that are to be compared: the same items "
                "on the factor (configural), with the same loadings (metric), and with the same "
                "intercepts (scalar).",
            .needs =
                "Three numeric items or more of one factor that fits in each group by itself, and "
                "a grouping variable with 100 complete cases or more in every group. Items with "
                "fewer than five answer categories strain the normal theory behind it.",
            .doNotClaim = InvarianceWording::cautions()};
    }

private:
    std::string computingLabel() const override {
        return "Fitting configural, metric, and scalar models…";
    }
    std::string statusLine() const override { return "The models are being fitted."; }

    std::vector<std::string> items() const {
        std::vector<std::string> names =
            FormControls::chosen(fields_.invItems.get(), numericVariables(state_.dataset()));
        std::erase(names, fields_.invGroup->name);
        return names;
    }

    Compute computation() const override {
        const std::vector<std::string> names = items();
        std::vector<NumericColumn> columns;
        for (const std::string& name : names) {
            columns.push_back(state_.dataset().numericColumn(name));
        }
        const std::string group = fields_.invGroup->name;
        return [columns = std::move(columns), groups = Categories::cells(state_.dataset(), group),
                options = InvarianceOptions{.itemNames = names, .groupFactorName = group}](
                   const TaskRunner::Progress&) {
            return MeasurementInvariance::test(columns, *groups, options)
                .value_or(InvarianceResult{.groupFactorName = options.groupFactorName});
        };
    }

    void present(const InvarianceResult& result, ScreenContent& content) const override {
        if (result.fits.empty()) {
            content.gate = {.title = "The models could not be compared",
                            .lead = "One factor across " + result.groupFactorName,
                            .text = ResultText::obstacle(result.readiness)};
            return;
        }
        addReport(
            {.title = "Measurement invariance across " + result.groupFactorName,
             .sentence = InvarianceReport::sentence(result),
             .tiles = InvarianceReport::tiles(result),
             .tables = InvarianceReport::tables(result),
             .note = std::string(note) + " Items: " + ResultText::listed(result.itemNames) + ".",
             .charts = InvarianceReport::charts(result),
             .figureCaption = "Loadings of the items in each group, estimated freely.",
             .caution = ResultText::running(InvarianceWording::cautions()),
             .warnings = ResultText::messages(result.readiness)},
            content);
    }
};

}  // namespace

std::unique_ptr<Analysis> invarianceAnalysis(StudioState& state, InvarianceFields& fields) {
    return std::make_unique<Invariance>(state, fields, fields.invResult);
}

}  // namespace sorvane
