#pragma once

#include <boost/describe/class.hpp>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AssumptionFinding.h"
#include "SorvaneCore/Analyses/Basics/BayesFactors.h"
#include "SorvaneCore/Analyses/Basics/RelationshipTests.h"
#include "SorvaneMac/Screens/CorrelationFields.h"
#include "SorvaneMac/Screens/ImmediateScreen.h"
#include "SorvaneMac/Screens/ScatterChart.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// What the screen shows of a pair: its correlation, the evidence for it, and the checks behind it.
struct PairEvidence {
    std::optional<CorrelationResult> pearson;
    std::optional<BayesFactors::Result> bayesFactor;
    std::vector<AssumptionFinding> assumptions;
};
BOOST_DESCRIBE_STRUCT(PairEvidence, (), (pearson, bayesFactor, assumptions))

/// The assumptions behind the association of two variables, on the pair that Correlation shows;
/// shown at once, without a run.
class RelationshipsScreen final : public ImmediateScreen {
public:
    RelationshipsScreen(StudioState& state, CorrelationFields& fields)
        : state_(state), fields_(fields) {}

    StudioScreen id() const override { return StudioScreen::relationships; }
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;

private:
    std::optional<Gate> gate() const override;
    Json record() const override;
    ChartVariable variable(const Field<VariableName>& field) const;
    static void addEvidence(const ChartVariable& x, const ChartVariable& y, ScreenContent& content);

    StudioState& state_;
    CorrelationFields& fields_;
};

}  // namespace sorvane
