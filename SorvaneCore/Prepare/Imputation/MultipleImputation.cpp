#include "SorvaneCore/Prepare/Imputation/MultipleImputation.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>

#include "SorvaneCore/Numerics/ParallelFor.h"
#include "SorvaneCore/Prepare/Imputation/ChainedImputation.h"
#include "SorvaneCore/Prepare/Imputation/ImputationWording.h"
#include "SorvaneCore/Prepare/Imputation/MICEAnalysis.h"

namespace sorvane::MultipleImputation {

namespace {

namespace wording = ImputationWording;

constexpr double manyMissing = 0.4;
constexpr std::size_t fewRows = 30;
constexpr std::int64_t fewImputations = 5;

/// Counts the sweeps of all chains, and asks whether to go on.
class Sweeps {
public:
    Sweeps(const ImputationOptions& options, double total) : options_(options), total_(total) {}

    bool mayBegin() {
        if (options_.shouldContinue && !options_.shouldContinue()) {
            isEnded_ = true;
        }
        return !isEnded_;
    }
    void finishOne() {
        const auto done = static_cast<double>(++done_);
        if (options_.progress && std::this_thread::get_id() == caller_) {
            options_.progress(std::min(done / total_, 1.0));
        }
    }
    bool isEnded() const { return isEnded_; }

private:
    const ImputationOptions& options_;
    double total_;
    const std::thread::id caller_ = std::this_thread::get_id();
    std::atomic<std::int64_t> done_ = 0;
    std::atomic<bool> isEnded_ = false;
};

/// One copy when its chain has ended.
struct Copy {
    CompletedColumns columns;
    std::uint64_t draws = 0;
    std::vector<std::vector<ImputedMoments>> moments;
    std::vector<std::int64_t> stepsWithoutFit;
};

Copy run(const ImputationTable& start,
         SplitMix64 random,
         const ImputationOptions& options,
         Sweeps& sweeps) {
    const auto donors = static_cast<std::size_t>(std::max<std::int64_t>(options.donorCount, 0));
    ChainedImputation chain{.table = start,
                            .random = random,
                            .stepsWithoutFit = std::vector<std::int64_t>(start.columns.size())};
    Copy copy;
    for (std::int64_t sweep = 0; sweep < options.maxIterations && sweeps.mayBegin(); ++sweep) {
        chain.sweep(donors);
        copy.moments.push_back(chain.moments());
        sweeps.finishOne();
    }
    copy.columns = chain.table.completed();
    copy.draws = chain.draws;
    copy.stepsWithoutFit = std::move(chain.stepsWithoutFit);
    return copy;
}

/// What a chain draws unless its columns are collinear: one number for every missing cell of every
/// sweep, two where a residual is drawn, none where there are too few rows for a fit.
std::uint64_t usualDraws(const ImputationTable& table, const ImputationOptions& options) {
    std::size_t coefficients = 0;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        coefficients += table.isExcluded(column) ? 0 : 1;
    }
    std::uint64_t draws = 0;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        const std::size_t observed = table.observedRows[column].size();
        if (table.isIncomplete(column) && observed >= coefficients) {
            const bool drawsDonors = options.donorCount >= 1 && observed > 1;
            draws += table.missingRows[column].size() * (drawsDonors ? 1 : 2);
        }
    }
    return draws * static_cast<std::uint64_t>(options.maxIterations);
}

/// The chains at once, each from where the one before usually ends. A chain that would have begun
/// elsewhere is run again from there, so that the result is that of one after the other.
std::vector<Copy> completedCopies(const ImputationTable& start,
                                  const ImputationOptions& options,
                                  Sweeps& sweeps) {
    const std::uint64_t usual = usualDraws(start, options);
    std::vector<Copy> copies(static_cast<std::size_t>(options.m));
    parallelFor(copies.size(), hardwareThreads(), [&](std::size_t i) {
        SplitMix64 random(options.seed);
        random.skip(i * usual);
        copies[i] = run(start, random, options, sweeps);
    });
    SplitMix64 random(options.seed);
    std::uint64_t taken = 0;
    for (std::size_t i = 0; i < copies.size() && !sweeps.isEnded(); ++i) {
        if (taken != i * usual) {
            copies[i] = run(start, random, options, sweeps);
        }
        random.skip(copies[i].draws);
        taken += copies[i].draws;
    }
    return copies;
}

TracedImputation traced(std::vector<Copy> copies, std::size_t columnCount) {
    TracedImputation result;
    result.trace.stepsWithoutFit.resize(columnCount);
    for (Copy& copy : copies) {
        result.result.imputedDatasets.push_back(std::move(copy.columns));
        result.trace.moments.push_back(std::move(copy.moments));
        for (std::size_t column = 0; column < columnCount; ++column) {
            result.trace.stepsWithoutFit[column] += copy.stepsWithoutFit[column];
        }
    }
    return result;
}

AnalysisReadiness readiness(const ImputationTable& table, const ImputationOptions& options) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    std::size_t missing = 0;
    std::vector<std::string> excluded;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        missing += table.missingRows[column].size();
        if (table.isExcluded(column)) {
            excluded.push_back(options.variableNames[column]);
        }
    }
    const auto cells = static_cast<double>(table.rowCount * table.columns.size());
    if (missing == 0) {
        caution(wording::nothingMissing());
    }
    if (static_cast<double>(missing) > manyMissing * cells) {
        caution(wording::manyMissing());
    }
    if (!excluded.empty()) {
        caution(wording::withoutValues(excluded));
    }
    if (table.rowCount < fewRows) {
        caution(wording::fewRows(static_cast<std::int64_t>(table.rowCount)));
    }
    if (options.m < fewImputations) {
        caution(wording::fewImputations(options.m));
    }
    const auto rows = static_cast<std::int64_t>(table.rowCount);
    return AnalysisReadiness::of(std::string(wording::minimumRequired), rows, rows,
                                 std::move(issues));
}

}  // namespace

std::optional<MultipleImputationResult> impute(std::span<const NumericColumn> columns,
                                               const ImputationOptions& options) {
    std::optional<TracedImputation> imputation = imputeTraced(columns, options);
    return imputation ? std::optional(std::move(imputation->result)) : std::nullopt;
}

std::optional<TracedImputation> imputeTraced(std::span<const NumericColumn> columns,
                                             const ImputationOptions& options) {
    const std::optional<ImputationTable> start = ImputationTable::filledWithMeans(columns);
    if (!start || options.m < 1 || options.maxIterations < 1 ||
        options.variableNames.size() != columns.size()) {
        return std::nullopt;
    }
    Sweeps sweeps(options, static_cast<double>(options.m * options.maxIterations));
    std::vector<Copy> copies = completedCopies(*start, options, sweeps);
    if (sweeps.isEnded()) {
        return std::nullopt;
    }
    TracedImputation imputation = traced(std::move(copies), columns.size());
    MultipleImputationResult& result = imputation.result;
    result.m = options.m;
    result.iterations = options.maxIterations;
    result.variableNames = options.variableNames;
    result.seed = options.seed;
    result.readiness = readiness(*start, options);
    return imputation;
}

std::optional<PooledEstimate> pooledMean(std::span<const NumericColumn> columns,
                                         const ImputationOptions& options,
                                         const std::string& target,
                                         double confidenceLevel) {
    if (std::ranges::find(options.variableNames, target) == options.variableNames.end()) {
        return std::nullopt;
    }
    const std::optional<MultipleImputationResult> imputed = impute(columns, options);
    return imputed ? MICEAnalysis::pooledMean(imputed->imputedDatasets, imputed->variableNames,
                                              target, confidenceLevel)
                   : std::nullopt;
}

}  // namespace sorvane::MultipleImputation
