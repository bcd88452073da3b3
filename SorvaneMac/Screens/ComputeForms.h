#pragma once

#include "SorvaneMac/Screens/PrepareForm.h"
#include "SorvaneMac/Screens/VariableEditorFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// One number a row from several variables, or from two.
class ComputeForm final : public PrepareForm {
public:
    ComputeForm(StudioState& state, VariableEditorFields& fields)
        : state_(state), fields_(fields) {}

    void seed() override;
    void addTo(SetupForm& form) override;
    Gate gate() const override;
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
    Gate gate() const override;
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
    Gate gate() const override;
    Guide guide() const override;

private:
    StudioState& state_;
};

}  // namespace sorvane
