#include <benchmark/benchmark.h>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Benchmarks/Draws.h"
#include "Benchmarks/Workload.h"
#include "SorvaneCore/Models/Multilevel/MultilevelGLMM.h"
#include "SorvaneCore/Models/Multilevel/MultilevelModel.h"

namespace sorvane {

namespace {

/// The columns of a study, in the making.
struct Study {
    std::vector<std::optional<double>> outcome{};
    std::vector<std::vector<std::optional<double>>> predictors{};
    std::vector<std::string> clusters{};
    std::vector<std::string> others{};

    explicit Study(std::size_t predictorCount) : predictors(predictorCount) {}

    MultilevelData data() const {
        MultilevelData result{.outcome = NumericColumn(outcome),
                              .cluster = TextColumn::of(clusters),
                              .cluster2 = others.empty() ? nullptr : TextColumn::of(others)};
        for (const auto& predictor : predictors) {
            result.fixedPredictors.emplace_back(predictor);
        }
        return result;
    }
};

double rounded(double value) {
    return std::round(value * 1e6) / 1e6;
}

std::vector<double> normals(Draws& draws, std::size_t count, double scale) {
    std::vector<double> result(count);
    for (double& value : result) {
        value = scale * draws.normal();
    }
    return result;
}

/// Pupils in schools that differ in intercept and, where `slope` is 1, in the effect of x1.
MultilevelData schools(std::size_t rows, std::size_t schoolCount, double slope) {
    Draws draws(110);
    Study study(3);
    const std::vector<double> intercepts = normals(draws, schoolCount, 0.7);
    const std::vector<double> slopes = normals(draws, schoolCount, 0.35);
    const std::vector<double> levels = normals(draws, schoolCount, 1.0);
    for (std::size_t i = 0; i < rows; ++i) {
        const std::size_t school = draws.below(schoolCount);
        const double x1 = rounded(draws.normal());
        const double x2 = draws.share() < 0.5 ? 1.0 : 0.0;
        const double x3 = rounded(draws.normal() + levels[school]);
        const double ownSlope = slope * (0.3 * intercepts[school] + slopes[school]);
        study.outcome.emplace_back(rounded(1.0 + (0.5 + ownSlope) * x1 - 0.3 * x2 + 0.2 * x3 +
                                           intercepts[school] + draws.normal()));
        study.predictors[0].emplace_back(x1);
        study.predictors[1].emplace_back(x2);
        study.predictors[2].emplace_back(x3);
        study.clusters.push_back("s" + std::to_string(school));
    }
    return study.data();
}

/// Answers of subjects to items.
MultilevelData answers(std::size_t rows, std::size_t subjects, std::size_t items) {
    Draws draws(113);
    Study study(2);
    const std::vector<double> ofSubject = normals(draws, subjects, 0.8);
    const std::vector<double> ofItem = normals(draws, items, 0.5);
    for (std::size_t i = 0; i < rows; ++i) {
        const std::size_t subject = draws.below(subjects);
        const std::size_t item = draws.below(items);
        const double x1 = rounded(draws.normal());
        const double x2 = rounded(draws.normal());
        study.outcome.emplace_back(rounded(1.0 + 0.5 * x1 - 0.2 * x2 + ofSubject[subject] +
                                           ofItem[item] + draws.normal()));
        study.predictors[0].emplace_back(x1);
        study.predictors[1].emplace_back(x2);
        study.clusters.push_back("p" + std::to_string(subject));
        study.others.push_back("i" + std::to_string(item));
    }
    return study.data();
}

/// Patients of clinics who are cured or not.
MultilevelData cures(std::size_t rows, std::size_t clinics) {
    Draws draws(114);
    Study study(2);
    const std::vector<double> ofClinic = normals(draws, clinics, 1.0);
    for (std::size_t i = 0; i < rows; ++i) {
        const std::size_t clinic = i % clinics;
        const double x1 = rounded(draws.normal());
        const double x2 = draws.share() < 0.5 ? 1.0 : 0.0;
        const double eta = -0.2 + 0.6 * x1 - 0.4 * x2 + ofClinic[clinic];
        study.outcome.emplace_back(draws.share() < 1.0 / (1.0 + std::exp(-eta)) ? 1.0 : 0.0);
        study.predictors[0].emplace_back(x1);
        study.predictors[1].emplace_back(x2);
        study.clusters.push_back("c" + std::to_string(clinic));
    }
    return study.data();
}

using MakeData = std::function<MultilevelData()>;
using FitData = std::optional<MultilevelResult> (*)(const MultilevelData&,
                                                    const MultilevelOptions&);

Workload fitting(std::pair<std::string, std::string> nameAndSize,
                 double targetSeconds,
                 const MakeData& make,
                 FitData fit,
                 const MultilevelOptions& options) {
    return {.name = nameAndSize.first,
            .size = nameAndSize.second,
            .targetSeconds = targetSeconds,
            .prepare = [=] {
                auto data = std::make_shared<MultilevelData>(make());
                return Job{.run =
                               [=] {
                                   auto result = fit(*data, options);
                                   benchmark::DoNotOptimize(result);
                               },
                           .amount = static_cast<double>(data->outcome.size()),
                           .unit = "rows"};
            }};
}

}  // namespace

std::vector<Workload> multilevelWorkloads() {
    const MultilevelOptions intercept{.fixedNames = {"x1", "x2", "x3"},
                                      .dfMethod = MultilevelDFMethod::satterthwaite};
    MultilevelOptions huge = intercept;
    huge.randomSlopeName = "x1";
    MultilevelOptions slope = huge;
    slope.dfMethod = MultilevelDFMethod::kenwardRoger;
    const MultilevelOptions crossed{.fixedNames = {"x1", "x2"},
                                    .dfMethod = MultilevelDFMethod::satterthwaite};
    const auto pupils = [](std::size_t rows, std::size_t count, double withSlope) {
        return [=] {
            return schools(rows, count, withSlope);
        };
    };
    const auto asked = [](std::size_t rows, std::size_t subjects, std::size_t items) {
        return [=] {
            return answers(rows, subjects, items);
        };
    };
    const auto cured = [](std::size_t rows, std::size_t clinics) {
        return [=] {
            return cures(rows, clinics);
        };
    };
    const FitData linear = MultilevelModel::fit;
    const FitData logistic = MultilevelGLMM::fitLogisticRI;
    return {fitting({"lmm_ri", "1e4"}, 0.003, pupils(10000, 100, 0), linear, intercept),
            fitting({"lmm_ri", "1e5"}, 0.02, pupils(100000, 1000, 0), linear, intercept),
            fitting({"lmm_slope", "2e3"}, 0.01, pupils(2000, 50, 1), linear, slope),
            fitting({"lmm_slope", "1e4"}, 0.03, pupils(10000, 200, 1), linear, slope),
            fitting({"lmm_huge", "1e4"}, 0.003, pupils(10000, 5, 1), linear, huge),
            fitting({"lmm_huge", "1e5"}, 0.02, pupils(100000, 5, 1), linear, huge),
            fitting({"lmm_cross", "5e3"}, 0.03, asked(5000, 100, 50), linear, crossed),
            fitting({"lmm_cross", "2e4"}, 0.2, asked(20000, 400, 100), linear, crossed),
            fitting({"lmm_cross", "6e4"}, 1.5, asked(60000, 2000, 500), linear, crossed),
            fitting({"glmm_agq15", "2e3"}, 0.08, cured(2000, 100), logistic, crossed),
            fitting({"glmm_agq15", "1e4"}, 0.4, cured(10000, 500), logistic, crossed)};
}

}  // namespace sorvane
