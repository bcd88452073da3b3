#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/RelationshipTests.h"
#include "SorvaneMac/Screens/CorrelationFields.h"
#include "SorvaneMac/Screens/ImmediateScreen.h"
#include "SorvaneMac/Screens/ScatterChart.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// What the correlation screen shows of one pair of variables.
struct PairCorrelations {
    std::optional<CorrelationResult> pearson;
    std::optional<CorrelationResult> spearman;
    std::optional<CorrelationResult> kendallTauB;
    /// With the control variable held constant; absent without one.
    std::optional<CorrelationResult> partial;
};
BOOST_DESCRIBE_STRUCT(PairCorrelations, (), (pearson, spearman, kendallTauB, partial))

/// Fills the blank selections of Correlation, whose pair Relationships shares.
void corrSeed(CorrelationFields& fields, const ImportedDataset& dataset);

/// A pair of variables in three measures, and a matrix of study variables.
class CorrelationScreen final : public ImmediateScreen {
public:
    CorrelationScreen(StudioState& state, CorrelationFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::correlation; }
    void seed() override { corrSeed(fields_, state_.dataset()); }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;

private:
    std::optional<Gate> gate() const override;
    Json record() const override;
    ChartVariable variable(const Field<VariableName>& field) const;
    PairCorrelations pairCorrelations(const NumericColumn& x, const NumericColumn& y) const;
    Card pairCard(const PairCorrelations& pair) const;
    Finding pairFinding(const PairCorrelations& pair, const Chart& scatter) const;
    ReportTable matrixTable(const std::vector<std::string>& names) const;
    Finding matrixFinding(const std::vector<std::string>& names) const;

    StudioState& state_;
    CorrelationFields& fields_;
};

}  // namespace sorvane
