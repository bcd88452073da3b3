#include <benchmark/benchmark.h>
#include <cmath>
#include <memory>
#include <utility>

#include "Benchmarks/Draws.h"
#include "Benchmarks/Workload.h"
#include "SorvaneCore/Analyses/Multivariate/CanonicalCorrelation.h"
#include "SorvaneCore/Analyses/Multivariate/DiscriminantAnalysis.h"
#include "SorvaneCore/Models/FactorMixtureModel.h"
#include "SorvaneCore/Models/Multilevel/MultilevelOrdinal.h"
#include "SorvaneCore/Models/Structural/MeasurementInvariance.h"
#include "SorvaneCore/Survey/SurveyCategorical.h"
#include "SorvaneCore/Survey/SurveyGLM.h"
#include "SorvaneCore/Survey/SurveyOrdinal.h"
#include "SorvaneCore/Survey/SurveyRegression.h"

namespace sorvane {

namespace {

using Texts = std::vector<std::string>;

/// Respondents in groups, with answers on one factor that is higher in later groups.
struct Study {
    std::vector<NumericColumn> answers{};
    Texts names{};
    std::shared_ptr<const TextColumn> groups{};
    NumericColumn level{};
    NumericColumn event{};
    SurveyDesign design{};

    Study(std::size_t rows, std::size_t columns, std::size_t groupCount) {
        Draws draws(211);
        std::vector<std::vector<std::optional<double>>> cells(columns);
        std::vector<std::optional<double>> levels;
        std::vector<std::optional<double>> events;
        Texts labels;
        Texts strata;
        for (std::size_t i = 0; i < rows; ++i) {
            const std::size_t group = i % groupCount;
            const double factor = draws.normal() + 0.5 * std::sin(static_cast<double>(group));
            for (std::vector<std::optional<double>>& column : cells) {
                column.emplace_back(std::round(100.0 * (factor + draws.normal())) / 100.0);
            }
            const double answer = factor + 1.5 * draws.normal();
            levels.emplace_back(answer < -1.0  ? 1.0
                                : answer < 0.0 ? 2.0
                                : answer < 1.0 ? 3.0
                                               : 4.0);
            events.emplace_back(answer > 0.5 ? 1.0 : 0.0);
            labels.push_back("g" + std::to_string(group));
            strata.push_back("s" + std::to_string(group % 4));
            design.weights.push_back(0.5 + draws.share());
        }
        for (std::vector<std::optional<double>>& column : cells) {
            answers.emplace_back(std::move(column));
            names.push_back("x" + std::to_string(names.size() + 1));
        }
        groups = TextColumn::of(labels);
        level = NumericColumn(std::move(levels));
        event = NumericColumn(std::move(events));
        design.strata = TextColumn::of(strata);
        design.clusters = groups;
    }

    std::span<const NumericColumn> firstHalf() const {
        return std::span(answers).first(answers.size() / 2);
    }
    std::span<const NumericColumn> secondHalf() const {
        return std::span(answers).subspan(answers.size() / 2);
    }
    Texts halfNames(bool isFirst) const {
        const auto middle = names.begin() + static_cast<std::ptrdiff_t>(names.size() / 2);
        return isFirst ? Texts(names.begin(), middle) : Texts(middle, names.end());
    }
    SurveyModelOptions modelOptions() const { return {.predictorNames = names}; }
};

struct Size {
    std::string name;
    std::size_t rows = 0;
    std::size_t columns = 0;
    std::size_t groups = 0;
};

/// Calls `use` with a study of the size.
template <typename Use>
Workload workload(const std::string& name, double targetSeconds, const Size& size, Use use) {
    return {.name = name, .size = size.name, .targetSeconds = targetSeconds, .prepare = [=] {
                auto study = std::make_shared<const Study>(size.rows, size.columns, size.groups);
                return Job{.run =
                               [=] {
                                   auto result = use(*study);
                                   benchmark::DoNotOptimize(result);
                               },
                           .amount = static_cast<double>(size.rows),
                           .unit = "rows"};
            }};
}

std::vector<Workload> groupWorkloads() {
    return {
        workload("discriminant", 0.02, {"1e4", 10000, 10, 4},
                 [](const Study& study) {
                     return DiscriminantAnalysis::fit(study.answers, *study.groups,
                                                      {.predictorNames = study.names});
                 }),
        workload("canonical", 0.02, {"1e4", 10000, 10, 4},
                 [](const Study& study) {
                     return CanonicalCorrelation::fit(
                         study.firstHalf(), study.secondHalf(),
                         {.setXNames = study.halfNames(true), .setYNames = study.halfNames(false)});
                 }),
        workload("invariance", 0.1, {"1e4", 10000, 8, 4},
                 [](const Study& study) {
                     return MeasurementInvariance::test(study.answers, *study.groups,
                                                        {.itemNames = study.names});
                 }),
        workload("clmm_agq15", 0.8, {"1e4", 10000, 2, 500},
                 [](const Study& study) {
                     return MultilevelOrdinal::fit({.outcome = study.level,
                                                    .fixedPredictors = study.answers,
                                                    .cluster = study.groups},
                                                   {.fixedNames = study.names});
                 }),
        workload("factor_mixture", 0.6, {"1e3", 1000, 6, 3},
                 [](const Study& study) {
                     return FactorMixtureModel::sweep(study.answers,
                                                      {.variableNames = study.names});
                 }),
    };
}

std::vector<Workload> designWorkloads() {
    const Size size{"1e4", 10000, 4, 100};
    return {
        workload("svy_linear", 0.02, size,
                 [](const Study& study) {
                     return SurveyRegression::fit(study.level, study.answers, study.design,
                                                  study.modelOptions());
                 }),
        workload("svy_logistic", 0.05, size,
                 [](const Study& study) {
                     return SurveyGLM::fitLogistic(study.event, study.answers, study.design,
                                                   study.modelOptions());
                 }),
        workload("svy_ordinal", 0.1, size,
                 [](const Study& study) {
                     return SurveyOrdinal::fit(study.level, study.answers, study.design,
                                               study.modelOptions());
                 }),
        workload("svy_table", 0.05, {"1e4", 10000, 1, 5},
                 [](const Study& study) {
                     return SurveyCategorical::test(*study.design.strata, *study.groups,
                                                    {.weights = study.design.weights});
                 }),
    };
}

}  // namespace

std::vector<Workload> modelFamilyWorkloads() {
    std::vector<Workload> all = groupWorkloads();
    for (Workload& each : designWorkloads()) {
        all.push_back(std::move(each));
    }
    return all;
}

}  // namespace sorvane
