#include "SorvaneMac/Screens/DataQualityScreen.h"

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/Screens/SelectionGates.h"

namespace sorvane {

namespace {

using VariableLists::numericVariables;

constexpr std::string_view analysis = "Data quality checking";
constexpr std::string_view clampTitle = "Nothing to set to missing yet";

std::optional<double> boundOf(const Field<std::string>& text) {
    return NumberText::parse(UnicodeText::trimmed(text.get()));
}

/// Whether something was typed that is no number.
bool isUnread(const Field<std::string>& text) {
    return !UnicodeText::trimmed(text.get()).empty() && !boundOf(text);
}

Gate clampBlocked(std::string text) {
    return {.title = std::string(clampTitle), .lead = "", .text = std::move(text)};
}

}  // namespace

void DataQualityScreen::seed() {
    Seeding::fillFirst(fields_.clVar, numericVariables(state_.dataset()));
}

SetupForm DataQualityScreen::setup() {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    SetupForm form;
    form.title = "Data Quality";
    form.controls = {
        HeadingControl{"CHECK"},
        variablePicker("Variable", fields_.clVar, numericVariables(state_.dataset())),
        enumerationPicker("Outliers", fields_.clOutlierMethod),
        HeadingControl{"VALID RANGE"},
        textField("Lowest valid value", "none", fields_.clLower),
        textField("Highest valid value", "none", fields_.clUpper),
        NoteControl{
            "A value equal to a bound is in range. Setting values to missing writes a new column "
            "and leaves this one as it is.",
            false},
    };
    OptionControls::addRun(form, "Set out-of-range values to missing", clampGate(),
                           [this] { run(); });
    return form;
}

std::optional<Gate> DataQualityScreen::gate() const {
    if (!state_.hasData()) {
        return ResultText::noDataGate();
    }
    if (numericVariables(state_.dataset()).empty()) {
        return Gate{.title = "There are no numeric columns",
                    .lead = "Missing-data diagnostics run on numeric variables.",
                    .text = "Set the role of a column with numbers in Variable Types."};
    }
    if (fields_.clVar->isBlank()) {
        return Gate{.title = "Nothing to check yet", .lead = "", .text = "Choose a variable."};
    }
    if (const auto gone = SelectionGates::goneColumn(
            fields_.clVar, numericVariables(state_.dataset()), "numeric columns")) {
        return *gone;
    }
    return ResultText::notYetGate(analysis);
}

std::optional<Gate> DataQualityScreen::clampGate() const {
    const std::optional<Gate> unready = gate();
    if (unready != ResultText::notYetGate(analysis)) {
        return unready;
    }
    if (isUnread(fields_.clLower) || isUnread(fields_.clUpper)) {
        return clampBlocked("A bound is not a number. Write it with digits and a decimal point.");
    }
    const std::optional<double> lower = boundOf(fields_.clLower);
    const std::optional<double> upper = boundOf(fields_.clUpper);
    if (!lower && !upper) {
        return clampBlocked("Set a lower and/or upper bound first.");
    }
    if (lower && upper && *lower > *upper) {
        return clampBlocked("The lowest valid value is above the highest.");
    }
    return unready;
}

std::string DataQualityScreen::subtitle() const {
    return "Missing values, values out of range, outliers and duplicate rows. The checks "
           "report; they change nothing.";
}

Guide DataQualityScreen::guide() const {
    return {.answers =
                "Where values are missing and whether that looks random, which values lie outside "
                "the range they can have, which lie far from the rest, and which rows are copies "
                "of one another.",
            .needs =
                "Numeric columns; for the range check the lowest and highest value that the "
                "instrument allows. Whether a flagged value is an error is decided with the "
                "questionnaire or the source at hand.",
            .doNotClaim = {
                "Do not delete cases only because a rule flagged them; in skewed data the quartile "
                "rule flags many honest values.",
                "Do not read a test of missingness that is not significant as proof that values "
                "are missing at random; with few cases it sees little.",
                "Do not call equal rows copies of one person where the answers have few "
                "categories and no identifier tells them apart.",
                "Do not clean without saying in the report what was set to missing, and by "
                "which rule."}};
}

}  // namespace sorvane
