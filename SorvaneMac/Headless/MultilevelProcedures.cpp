#include <functional>
#include <utility>

#include "SorvaneCore/Models/Multilevel/MultilevelGLMM.h"
#include "SorvaneCore/Models/Multilevel/MultilevelInputs.h"
#include "SorvaneCore/Models/Multilevel/MultilevelModel.h"
#include "SorvaneCore/Models/Multilevel/MultilevelOrdinal.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

using Fit = std::optional<MultilevelResult> (*)(const MultilevelData& data,
                                                const MultilevelOptions& options);

/// A column of texts that groups rows, with what it is called in the result.
struct LabelledClusters {
    CodedColumn column{};
    std::string label{};
};

/// Such a column and its label, which may be given under either of two names and is otherwise the
/// column's own.
struct Clusters {
    std::string name;
    std::string labelName;
    std::string otherLabelName{};
    bool isOptional = false;

    LabelledClusters read(const CallArguments& call) const {
        if (isOptional && !call.isGiven(name)) {
            return {.label = call.setting<std::string>(labelName, "")};
        }
        const bool isOther = !otherLabelName.empty() && call.isGiven(otherLabelName);
        return {.column = call.codedColumn(name),
                .label = call.columnName(isOther ? otherLabelName : labelName, name)};
    }
    std::vector<ListedArgument> listed() const {
        std::vector<ListedArgument> result = {{name, "column of texts"}, {labelName, "text", ""}};
        if (isOptional) {
            result.front().fallback = "";
        }
        if (!otherLabelName.empty()) {
            result.push_back({otherLabelName, "text, in place of " + labelName, ""});
        }
        return result;
    }
};

/// The outcome, the predictors with their names and the level of the bounds: what all fits take.
struct FixedPart {
    arguments::Column outcome{"outcome"};
    arguments::Columns predictors{"fixedPredictors", "fixedNames"};
    arguments::Names names{"fixedNames", "fixedPredictors"};
    arguments::Setting<double> level{"confidenceLevel", MultilevelOptions{}.confidenceLevel};

    std::pair<MultilevelData, MultilevelOptions> read(const CallArguments& call) const {
        return {{.outcome = outcome.read(call), .fixedPredictors = predictors.read(call)},
                {.fixedNames = names.read(call), .confidenceLevel = level.read(call)}};
    }
    std::vector<ListedArgument> listed() const {
        return listedOf(outcome, predictors, names, level);
    }
};

using Inputs = std::pair<MultilevelData, MultilevelOptions>;

void setClusters(Inputs& inputs, LabelledClusters first, LabelledClusters second = {}) {
    inputs.first.cluster = std::move(first.column);
    inputs.first.cluster2 = std::move(second.column);
    inputs.second.clusterLabel = std::move(first.label);
    inputs.second.cluster2Label = std::move(second.label);
}

/// Binds what is asked of a linear model, which `use` gets with its data and options.
template <typename Use>
Procedure linearProcedure(const std::string& name, Use use) {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const MultilevelOptions start;
    return procedure(
        "MultilevelModel." + name,
        [use](Inputs inputs, LabelledClusters first, LabelledClusters second,
              MultilevelEstimator estimator, std::optional<std::string> slope, bool correlated,
              MultilevelDFMethod dfMethod) {
            setClusters(inputs, std::move(first), std::move(second));
            inputs.second.estimator = estimator;
            inputs.second.randomSlopeName = std::move(slope);
            inputs.second.correlateRandomEffects = correlated;
            inputs.second.dfMethod = dfMethod;
            return use(inputs.first, inputs.second);
        },
        FixedPart{}, Clusters{"cluster", "clusterLabel"},
        Clusters{.name = "cluster2", .labelName = "cluster2Label", .isOptional = true},
        Setting<MultilevelEstimator>{"estimator", start.estimator},
        Setting<std::optional<std::string>>{"randomSlopeName"},
        Setting<bool>{"correlateRandomEffects", start.correlateRandomEffects},
        Setting<MultilevelDFMethod>{"dfMethod", start.dfMethod});
}

std::vector<MultilevelClusterEffect> fittedClusterEffects(const MultilevelData& data,
                                                          const MultilevelOptions& options) {
    const std::optional<MultilevelResult> result = MultilevelModel::fit(data, options);
    return result ? MultilevelModel::clusterEffects(data, options, *result)
                  : std::vector<MultilevelClusterEffect>{};
}

Procedure interceptFit(const std::string& name, Fit fit) {
    return procedure(
        "MultilevelGLMM." + name,
        [fit](Inputs inputs, LabelledClusters clusters) {
            setClusters(inputs, std::move(clusters));
            return fit(inputs.first, inputs.second);
        },
        FixedPart{}, Clusters{"cluster", "clusterLabel"});
}

Procedure slopeFit(const std::string& name, Fit fit) {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return procedure(
        "MultilevelGLMM." + name,
        [fit](Inputs inputs, LabelledClusters clusters, std::string slope, bool correlated) {
            setClusters(inputs, std::move(clusters));
            inputs.second.randomSlopeName = std::move(slope);
            inputs.second.correlateRandomEffects = correlated;
            return fit(inputs.first, inputs.second);
        },
        FixedPart{}, Clusters{"cluster", "clusterLabel"}, Value<std::string>{"randomSlopeName"},
        Setting<bool>{"correlateRandomEffects", MultilevelOptions{}.correlateRandomEffects});
}

std::optional<MultilevelResult> fitOneOrTwo(MultilevelFamily family,
                                            const MultilevelData& data,
                                            const MultilevelOptions& options) {
    const bool isBinomial = family == MultilevelFamily::binomial;
    if (data.cluster2) {
        return isBinomial ? MultilevelGLMM::fitLogisticCrossed(data, options)
                          : MultilevelGLMM::fitPoissonCrossed(data, options);
    }
    if (options.randomSlopeName) {
        return isBinomial ? MultilevelGLMM::fitLogisticRS(data, options)
                          : MultilevelGLMM::fitPoissonRS(data, options);
    }
    return isBinomial ? MultilevelGLMM::fitLogisticRI(data, options)
                      : MultilevelGLMM::fitPoissonRI(data, options);
}

Procedure linkedClusterEffects() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return procedure(
        "MultilevelGLMM.clusterEffects",
        [](Inputs inputs, LabelledClusters first, LabelledClusters second, MultilevelFamily family,
           std::optional<std::string> slope, bool correlated) {
            setClusters(inputs, std::move(first), std::move(second));
            inputs.second.randomSlopeName = std::move(slope);
            inputs.second.correlateRandomEffects = correlated;
            const auto result = fitOneOrTwo(family, inputs.first, inputs.second);
            return result ? MultilevelGLMM::clusterEffects(family, inputs.first, inputs.second,
                                                           *result)
                          : std::vector<MultilevelClusterEffect>{};
        },
        FixedPart{}, Clusters{"cluster", "clusterLabel"},
        Clusters{.name = "cluster2", .labelName = "cluster2Label", .isOptional = true},
        Value<MultilevelFamily>{"family"}, Setting<std::optional<std::string>>{"randomSlopeName"},
        Setting<bool>{"correlateRandomEffects", MultilevelOptions{}.correlateRandomEffects});
}

Procedure twoFactorFit(const std::string& name,
                       Fit fit,
                       const Clusters& first,
                       const Clusters& second) {
    return procedure(
        "MultilevelGLMM." + name,
        [fit](Inputs inputs, LabelledClusters a, LabelledClusters b) {
            setClusters(inputs, std::move(a), std::move(b));
            return fit(inputs.first, inputs.second);
        },
        FixedPart{}, first, second);
}

std::vector<MultilevelClusterEffect> ordinalClusterEffects(const MultilevelData& data,
                                                           const MultilevelOptions& options) {
    const auto result = MultilevelOrdinal::fit(data, options);
    return result ? MultilevelOrdinal::clusterEffects(data, options, *result)
                  : std::vector<MultilevelClusterEffect>{};
}

template <typename Use>
Procedure ordinalProcedure(const std::string& name, Use use) {
    return procedure(
        "MultilevelOrdinal." + name,
        [use](Inputs inputs, LabelledClusters clusters) {
            setClusters(inputs, std::move(clusters));
            return use(inputs.first, inputs.second);
        },
        FixedPart{}, Clusters{"cluster", "clusterLabel"});
}

}  // namespace

std::vector<Procedure> multilevelProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Clusters a{"clusterA", "clusterALabel", "labelA"};
    const Clusters b{"clusterB", "clusterBLabel", "labelB"};
    const Clusters outer{"outerCluster", "outerClusterLabel", "outerLabel"};
    const Clusters inner{"innerCluster", "innerClusterLabel", "innerLabel"};
    return {
        linearProcedure("fit", MultilevelModel::fit),
        linearProcedure("clusterEffects", fittedClusterEffects),
        procedure(
            "MultilevelModel.lagWithinCluster",
            [](const NumericColumn& outcome, const CodedColumn& cluster,
               const NumericColumn& time) {
                return MultilevelInputs::lagWithinCluster(outcome, *cluster, time);
            },
            Column{"outcome"}, Categories{"cluster"}, Column{"time"}),
        interceptFit("fitLogisticRI", MultilevelGLMM::fitLogisticRI),
        interceptFit("fitPoissonRI", MultilevelGLMM::fitPoissonRI),
        slopeFit("fitLogisticRS", MultilevelGLMM::fitLogisticRS),
        slopeFit("fitPoissonRS", MultilevelGLMM::fitPoissonRS),
        twoFactorFit("fitLogisticCrossed", MultilevelGLMM::fitLogisticCrossed, a, b),
        twoFactorFit("fitPoissonCrossed", MultilevelGLMM::fitPoissonCrossed, a, b),
        twoFactorFit("fitLogisticThreeLevel", MultilevelGLMM::fitLogisticThreeLevel, outer, inner),
        twoFactorFit("fitPoissonThreeLevel", MultilevelGLMM::fitPoissonThreeLevel, outer, inner),
        linkedClusterEffects(),
        ordinalProcedure("fit", MultilevelOrdinal::fit),
        ordinalProcedure("clusterEffects", ordinalClusterEffects),
    };
}

}  // namespace sorvane
