#pragma once

#include "SorvaneMac/Screens/PrepareForm.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableEditorFields.h"

namespace sorvane {

/// One number a row from several variables, or from two.
class ComputeForm final : public PrepareForm {
public:
    explicit ComputeForm(StudioState& state) : state_(state), fields_(state.editor) {}

    void seed() override;
    void addTo(SetupForm& form) override;
    std::optional<Gate> gate() const override;
    void run() override;
    void showPreview(ScreenContent& content) const override;
    Guide guide() const override;

private:
    bool isPair() const { return fields_.cvKind.get() == "pair"; }
    void addAggregate(SetupForm& form);
    void addPair(SetupForm& form);

    StudioState& state_;
    VariableEditorFields& fields_;
};

/// A total, a mean or a count of answers over chosen variables, ready as an outcome.
class TotalScoreForm final : public PrepareForm {
public:
    explicit TotalScoreForm(StudioState& state) : state_(state) {}

    void addTo(SetupForm& form) override;
    std::optional<Gate> gate() const override;
    void run() override;
    Guide guide() const override;

private:
    CheckListControl sources();

    StudioState& state_;
};

/// The score of the item set of Scale & Reliability.
class ScaleScoreForm final : public PrepareForm {
public:
    explicit ScaleScoreForm(StudioState& state) : state_(state) {}

    void addTo(SetupForm& form) override;
    std::optional<Gate> gate() const override;
    void run() override;
    Guide guide() const override;

private:
    StudioState& state_;
};

}  // namespace sorvane
