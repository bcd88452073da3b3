#pragma once

#include "SorvaneMac/Screens/PrepareForm.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableEditorFields.h"

namespace sorvane {

/// Replaces values or bands of values of one variable, or turns its scale round.
class RecodeForm final : public PrepareForm {
public:
    explicit RecodeForm(StudioState& state) : state_(state), fields_(state.editor) {}

    void seed() override;
    void addTo(SetupForm& form) override;
    std::optional<Gate> gate() const override;
    void run() override;
    void showPreview(ScreenContent& content) const override;
    Guide guide() const override;

private:
    bool isRange() const { return fields_.rcMode.get() == "range"; }
    bool isReverse() const { return fields_.rcMode.get() == "reverse"; }
    void addReverse(SetupForm& form);
    void addValueDraft(SetupForm& form);
    void addRangeDraft(SetupForm& form);
    void addRules(SetupForm& form);
    /// Takes the draft as a rule and clears it.
    void takeDraft();
    TextControl draftText(std::string label, std::string prompt, std::string RecodeDraft::*part);
    ToggleControl draftToggle(std::string label, bool RecodeDraft::*part);

    StudioState& state_;
    VariableEditorFields& fields_;
};

}  // namespace sorvane
