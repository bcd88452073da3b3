#include "SorvaneCore/Analyses/Categorical/SampleComposition.h"

#include <array>
#include <cmath>
#include <limits>
#include <numeric>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Categorical/GoodnessOfFit.h"
#include "SorvaneCore/Dataset/LabelOrder.h"

namespace sorvane::SampleComposition {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

const char* const minimumRequired =
    "At least two categories, each with a benchmark above 0, and cases in the sample";
const char* const noCases = "The sample has no cases with a category.";
const char* const tooFewCategories = "Fewer than two categories can be compared.";

std::string withoutBenchmark(const std::string& category) {
    return "Enter a benchmark above 0 for \"" + category + "\".";
}

/// The categories of the sample and of the benchmarks, by label.
std::map<std::string, std::int64_t> countsOf(const TextColumn& column,
                                             const std::map<std::string, double>& benchmarks) {
    const std::array columns = {&column};
    const CategoryCodes codes = CategoryCodes::of(column, CompleteCases::rows({}, columns));
    const std::vector<std::int64_t> counts = codes.counts();
    std::map<std::string, std::int64_t> byName;
    for (const auto& [name, share] : benchmarks) {
        byName[name] = 0;
    }
    for (std::size_t i = 0; i < counts.size(); ++i) {
        byName[codes.labels[i]] = counts[i];
    }
    return byName;
}

bool isShare(double value) {
    return value > 0.0 && std::isfinite(value);
}

std::vector<AnalysisReadinessIssue> issues(const CompositionResult& result, std::int64_t total) {
    std::vector<AnalysisReadinessIssue> found;
    for (const CompositionCategory& category : result.categories) {
        if (!isShare(category.benchmarkPercent)) {
            found.push_back(AnalysisReadinessIssue::blocked(withoutBenchmark(category.name)));
        }
    }
    if (total == 0) {
        found.push_back(AnalysisReadinessIssue::blocked(noCases));
    }
    if (result.categories.size() < 2) {
        found.push_back(AnalysisReadinessIssue::blocked(tooFewCategories));
    }
    return found;
}

std::vector<CompositionCategory> categoriesOf(const TextColumn& column,
                                              const std::map<std::string, double>& benchmarks) {
    const std::map<std::string, std::int64_t> counts = countsOf(column, benchmarks);
    std::vector<std::string> names;
    for (const auto& [name, count] : counts) {
        names.push_back(name);
    }
    std::vector<CompositionCategory> categories;
    for (const std::size_t index : LabelOrder::caseInsensitive(names)) {
        const std::string& name = names[index];
        const auto benchmark = benchmarks.find(name);
        categories.push_back(
            {.name = name,
             .count = counts.at(name),
             .benchmarkPercent = benchmark == benchmarks.end() ? 0.0 : benchmark->second});
    }
    return categories;
}

/// Brings the shares to percents, and notes how far the sample is from them.
void compareShares(std::vector<CompositionCategory>& categories, std::int64_t total) {
    const double shares = std::accumulate(
        categories.begin(), categories.end(), 0.0,
        [](double sum, const CompositionCategory& each) { return sum + each.benchmarkPercent; });
    for (CompositionCategory& each : categories) {
        each.samplePercent =
            total == 0 ? 0.0 : 100.0 * static_cast<double>(each.count) / static_cast<double>(total);
        each.benchmarkPercent = 100.0 * each.benchmarkPercent / shares;
        each.difference = each.samplePercent - each.benchmarkPercent;
    }
}

}  // namespace

CompositionResult compare(const TextColumn& categories,
                          const std::map<std::string, double>& benchmarks) {
    CompositionResult result{.categories = categoriesOf(categories, benchmarks),
                             .statistic = notANumber,
                             .pValue = notANumber};
    std::vector<std::int64_t> observed;
    std::vector<double> shares;
    for (const CompositionCategory& each : result.categories) {
        observed.push_back(each.count);
        shares.push_back(each.benchmarkPercent);
    }
    const std::int64_t total = std::accumulate(observed.begin(), observed.end(), std::int64_t{0});
    const auto rows = static_cast<std::int64_t>(categories.size());
    std::vector<AnalysisReadinessIssue> found = issues(result, total);
    if (!found.empty()) {
        result.readiness = AnalysisReadiness::of(minimumRequired, rows, total, std::move(found));
        return result;
    }
    compareShares(result.categories, total);
    if (const auto test = GoodnessOfFit::chiSquare(observed, {}, shares)) {
        result.statistic = test->statistic;
        result.degreesOfFreedom = test->degreesOfFreedom;
        result.pValue = test->pValue;
        found = test->readiness.issues;
    }
    result.readiness = AnalysisReadiness::of(minimumRequired, rows, total, std::move(found));
    return result;
}

}  // namespace sorvane::SampleComposition
