#include "SorvaneMac/Screens/Structural/StructuralDiagram.h"

#include <algorithm>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/ReportNumbers.h"

namespace sorvane::StructuralDiagram {

namespace {

constexpr int decimals = 2;

/// The nodes of a diagram, latent ones first, and its paths.
class Drawing {
public:
    Drawing(const std::vector<std::string>& latent, const std::vector<std::string>& observed) {
        for (const std::string& name : latent) {
            diagram_.nodes.push_back({name, PathDiagram::Shape::latent});
        }
        for (const std::string& name : observed) {
            diagram_.nodes.push_back({name, PathDiagram::Shape::observed});
        }
    }

    /// Adds a coefficient unless it is a variance.
    template <typename Coefficient>
    void add(const Coefficient& each, std::string label) {
        if (each.lhs == each.rhs) {
            return;
        }
        // Only "y ~ x" is written against its arrow.
        const bool isRegression = each.op == rawValue(SEMSyntaxOperator::regression);
        const bool isCovariance = each.op == rawValue(SEMSyntaxOperator::covariance);
        diagram_.paths.push_back(
            {.from = node(isRegression ? each.rhs : each.lhs),
             .to = node(isRegression ? each.lhs : each.rhs),
             .arrow = isCovariance ? PathDiagram::Arrow::bidirected : PathDiagram::Arrow::directed,
             .label = std::move(label)});
    }

    PathDiagram take() { return std::move(diagram_); }

private:
    std::size_t node(const std::string& name) const {
        const auto found = std::ranges::find(diagram_.nodes, name, &PathDiagram::Node::label);
        return static_cast<std::size_t>(found - diagram_.nodes.begin());
    }

    PathDiagram diagram_;
};

}  // namespace

Chart ofModel(const SEMModel& model) {
    Drawing drawing(model.latent, model.observed);
    for (const SEMParameterSlot& slot : model.parameters) {
        drawing.add(slot, slot.isFree ? "" : NumberText::derivedValue(slot.fixedValue));
    }
    Chart chart;
    chart.title = "Parsed model";
    chart.subtitle = "Fixed coefficients stand on their paths; all others are estimated.";
    chart.plot = drawing.take();
    return chart;
}

Chart ofResult(const SEMResult& result) {
    Drawing drawing(result.latent, result.observed);
    for (const SEMParameter& each : result.parameters) {
        drawing.add(each, each.standardized ? svFmtBounded(each.standardized, decimals) : "");
    }
    Chart chart;
    chart.title = "Path diagram";
    chart.subtitle = "Path diagram of the fitted model (standardized loadings).";
    chart.plot = drawing.take();
    return chart;
}

}  // namespace sorvane::StructuralDiagram
