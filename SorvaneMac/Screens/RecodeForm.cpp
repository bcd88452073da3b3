#include "SorvaneMac/Screens/RecodeForm.h"

#include "SorvaneMac/Screens/DataPreparation.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/Seeding.h"
#include "SorvaneMac/State/LogText.h"
#include "SorvaneMac/State/RecodeDrafts.h"

namespace sorvane {

namespace {

using VariableLists::numericVariables;

/// Widest scale that the steppers reach.
constexpr double scaleLimit = 9999.0;

Gate notReady(std::string text) {
    return {.title = "Nothing to recode yet", .lead = "", .text = std::move(text)};
}

NumberControl scaleEnd(std::string label, Field<double>& field) {
    return {.label = std::move(label),
            .minimum = -scaleLimit,
            .maximum = scaleLimit,
            .step = 0.5,
            .value = field.get(),
            .valueText = LogText::number(field.get()),
            .set = [&field](double value) {
                field.set(value);
            }};
}

}  // namespace

void RecodeForm::seed() {
    Seeding::fillFirst(fields_.rcSource, numericVariables(state_.dataset()));
}

TextControl RecodeForm::draftText(std::string label,
                                  std::string prompt,
                                  std::string RecodeDraft::*part) {
    return {.label = std::move(label),
            .prompt = std::move(prompt),
            .text = fields_.rcDraft.get().*part,
            .set = [this, part](const std::string& text) {
                fields_.rcDraft.edit([&](RecodeDraft& draft) { draft.*part = text; });
            }};
}

ToggleControl RecodeForm::draftToggle(std::string label, bool RecodeDraft::*part) {
    return {.label = std::move(label),
            .isOn = fields_.rcDraft.get().*part,
            .set = [this, part](bool isOn) {
                fields_.rcDraft.edit([&](RecodeDraft& draft) { draft.*part = isOn; });
            }};
}

void RecodeForm::addReverse(SetupForm& form) {
    form.controls.emplace_back(scaleEnd("Scale minimum", fields_.rcReverseMin));
    form.controls.emplace_back(scaleEnd("Scale maximum", fields_.rcReverseMax));
    form.controls.emplace_back(
        NoteControl{"A value becomes minimum + maximum - value. Values outside the scale become "
                    "missing.",
                    false});
}

void RecodeForm::addValueDraft(SetupForm& form) {
    form.controls.emplace_back(draftText("Old values", "1, 2", &RecodeDraft::sources));
}

void RecodeForm::addRangeDraft(SetupForm& form) {
    form.controls.emplace_back(draftText("From", "18", &RecodeDraft::lower));
    form.controls.emplace_back(
        draftToggle("The lower bound belongs to the band", &RecodeDraft::lowerInclusive));
    form.controls.emplace_back(draftText("To", "29", &RecodeDraft::upper));
    form.controls.emplace_back(
        draftToggle("The upper bound belongs to the band", &RecodeDraft::upperInclusive));
}

void RecodeForm::takeDraft() {
    if (isRange()) {
        if (const auto rule = RecodeDrafts::rangeRule(fields_.rcDraft.get())) {
            fields_.rcRangeRules.edit([&](auto& rules) { rules.push_back(*rule); });
            fields_.rcDraft.reset();
        }
    } else if (const auto rule = RecodeDrafts::valueRule(fields_.rcDraft.get())) {
        fields_.rcValueRules.edit([&](auto& rules) { rules.push_back(*rule); });
        fields_.rcDraft.reset();
    }
}

void RecodeForm::addRules(SetupForm& form) {
    const RecodeDraft& draft = fields_.rcDraft.get();
    form.controls.emplace_back(
        draftText("New value", "blank: recode to missing", &RecodeDraft::output));
    form.controls.emplace_back(
        ButtonControl{.label = isRange() ? "Add band" : "Add rule",
                      .isEnabled = isRange() ? RecodeDrafts::rangeRule(draft).has_value()
                                             : RecodeDrafts::valueRule(draft).has_value(),
                      .press = [this] {
                          takeDraft();
                      }});
    const auto addRemoval = [&form](const auto& rule, auto& field) {
        form.controls.emplace_back(
            ButtonControl{.label = "Remove " + RecodeDrafts::text(rule), .press = [&field, rule] {
                              field.edit([&](auto& rules) { std::erase(rules, rule); });
                          }});
    };
    if (isRange()) {
        for (const RangeRecodeRule& rule : fields_.rcRangeRules.get()) {
            addRemoval(rule, fields_.rcRangeRules);
        }
    } else {
        for (const ValueRecodeRule& rule : fields_.rcValueRules.get()) {
            addRemoval(rule, fields_.rcValueRules);
        }
    }
    form.controls.emplace_back(
        OptionControls::toggle("Keep values that no rule matches", fields_.rcCopyUnmatched));
}

void RecodeForm::addTo(SetupForm& form) {
    using namespace FormControls;  // NOLINT(google-build-using-namespace)
    form.controls.emplace_back(
        variablePicker("Source variable", fields_.rcSource, numericVariables(state_.dataset())));
    form.controls.emplace_back(wordPicker("Recode by", fields_.rcMode,
                                          {{"value", "Single values"},
                                           {"range", "Bands of values"},
                                           {"reverse", "Reverse the scale"}}));
    if (isReverse()) {
        addReverse(form);
    } else {
        if (isRange()) {
            addRangeDraft(form);
        } else {
            addValueDraft(form);
        }
        addRules(form);
    }
    form.controls.emplace_back(HeadingControl{"RESULT"});
    form.controls.emplace_back(
        OptionControls::toggle("Replace the source variable", fields_.rcReplace));
    if (!fields_.rcReplace.get()) {
        form.controls.emplace_back(textField("Name of the new variable",
                                             fields_.rcSource->name + " Recoded", fields_.rcName));
    }
    DataPreparation::addRun(
        form, state_,
        {.label = "Recode", .gate = gate(), .message = &fields_.rcMessage, .run = [this] {
             run();
         }});
}

std::optional<Gate> RecodeForm::gate() const {
    const std::optional<std::string> lacking = state_.recodeLacks();
    return lacking ? std::optional(notReady(*lacking)) : std::nullopt;
}

void RecodeForm::run() {
    state_.runRecode();
}

void RecodeForm::showPreview(ScreenContent& content) const {
    const std::string& source = fields_.rcSource->name;
    DataPreparation::addPreview(content, state_.dataset(), {source},
                                state_.recodePreview(DataPreparation::previewRows));
}

Guide RecodeForm::guide() const {
    return {
        .answers =
            "How to give values of a variable other numbers: single values, whole bands, or "
            "a scale turned round so that a high number means the same in every item.",
        .needs =
            "A numeric variable. Rules are tried in order and the first that fits decides. "
            "For a reversal, the lowest and highest value that the scale can have, not those "
            "that happened to be chosen.",
        .doNotClaim = {"Do not report a recoded variable without its rules.",
                       "Do not turn an item round that is already marked as reversed on Scale & "
                       "Reliability; it would be turned twice.",
                       "Do not choose bands after looking at which of them gives a result."}};
}

}  // namespace sorvane
