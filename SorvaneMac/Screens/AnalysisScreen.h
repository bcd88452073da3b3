#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// A screen whose analysis runs at the press of a button: one analysis, or one chosen among
/// several.
class AnalysisScreen : public Screen {
public:
    StudioScreen id() const final { return id_; }
    SetupForm setup() final;
    ScreenContent content() const final;
    Guide guide() const final { return chosen().guide(); }
    std::optional<std::string> run() final;
    Json result() const final;

protected:
    /// Input      `hasRun`: whether a run stands since the table came in
    AnalysisScreen(StudioScreen id, StudioState& state, Field<bool>& hasRun)
        : state_(state), id_(id), hasRun_(hasRun) {}

    void add(std::unique_ptr<Analysis> analysis) { analyses_.push_back(std::move(analysis)); }
    /// Adds a choice above those that the analysis asks for, in the order of the calls.
    void offer(std::function<ChoiceControl()> picker) { pickers_.push_back(std::move(picker)); }
    /// The field chooses among the analyses, which are added in the order of its enumerators;
    /// `then` is called after the user's choice.
    template <typename Choice>
    void chooseBy(std::string label, Field<Choice>& field, std::function<void()> then = nullptr) {
        followChoice(field);
        offer([&field, label = std::move(label), then = std::move(then)] {
            ChoiceControl picker = FormControls::enumerationPicker(label, field);
            return then ? OptionControls::followedBy(std::move(picker), then) : picker;
        });
    }
    /// The same where the analyses offer the choice themselves, among their controls.
    template <typename Choice>
    void followChoice(Field<Choice>& field) {
        position_ = [&field] {
            return static_cast<std::size_t>(field.get());
        };
    }

    StudioState& state_;

private:
    Analysis& chosen() const { return *analyses_.at(position_ ? position_() : 0); }
    std::optional<Gate> gate() const;

    StudioScreen id_;
    Field<bool>& hasRun_;
    std::vector<std::unique_ptr<Analysis>> analyses_;
    std::function<std::size_t()> position_;
    std::vector<std::function<ChoiceControl()>> pickers_;
};

}  // namespace sorvane
