#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneMac/Screens/DescriptivesFields.h"
#include "SorvaneMac/Screens/ImmediateScreen.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"
#include "SorvaneMac/Screens/Survey/SurveyWeights.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// One numeric variable in figures, charts and normality evidence, and a table of all of them.
class DescriptivesScreen final : public ImmediateScreen {
public:
    DescriptivesScreen(StudioState& state, DescriptivesFields& fields, SurveyFields& survey)
        : state_(state), fields_(fields), survey_(survey) {}

    StudioScreen id() const override { return StudioScreen::descriptives; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;

private:
    const std::string& variable() const { return state_.selectedDescriptiveVariableName->name; }
    const std::string& group() const { return state_.selectedDescriptiveGroupName->name; }
    std::optional<Gate> gate() const override;
    Json record() const override;
    NumericColumn column() const { return state_.dataset().numericColumn(variable()); }
    DescriptiveSummary summary(const NumericColumn& values) const;
    std::optional<Chart> histogram(const NumericColumn& values) const;
    std::optional<Chart> boxPlot(const NumericColumn& values) const;
    /// The chosen variable is described already.
    Card allFieldsCard(const DescriptiveSummary& ofVariable) const;
    Finding finding(const DescriptiveSummary& summary, std::optional<Chart> histogram) const;

    bool isWeighted() const { return survey_.surveyWeightsActive.get(); }
    /// Says on the figures of the sample that they are unweighted, and adds the weighted ones.
    void addWeighted(const NumericColumn& values, ScreenContent& content) const;
    SurveyWeights::Descriptives weighted(const NumericColumn& values) const;

    /// The characteristics chosen for the table of respondents.
    std::vector<std::string> characteristics() const;
    /// The columns chosen for it that are no longer offered.
    std::vector<std::string> goneCharacteristics() const;
    /// The table of respondents, or what it lacks; without a choice nothing.
    void addRespondents(ScreenContent& content) const;

    StudioState& state_;
    DescriptivesFields& fields_;
    SurveyFields& survey_;
    mutable SurveyWeights::KeptDesign design_;
};

}  // namespace sorvane
