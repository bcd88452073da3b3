#include "SorvaneCore/Prepare/Imputation/MultipleImputation.h"

#include <algorithm>
#include <atomic>
#include <mutex>

#include "SorvaneCore/Numerics/ParallelFor.h"
#include "SorvaneCore/Prepare/Imputation/ChainedImputation.h"
#include "SorvaneCore/Prepare/Imputation/ImputationWording.h"

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
        const std::lock_guard lock(mutex_);
        done_ += 1.0;
        if (options_.progress) {
            options_.progress(std::min(done_ / total_, 1.0));
        }
    }
    bool isEnded() const { return isEnded_; }

private:
    const ImputationOptions& options_;
    double total_;
    std::mutex mutex_;
    double done_ = 0.0;
    std::atomic<bool> isEnded_ = false;
};

void run(ChainedImputation& chain, const ImputationOptions& options, Sweeps& sweeps) {
    const auto donors = static_cast<std::size_t>(std::max<std::int64_t>(options.donorCount, 0));
    for (std::int64_t sweep = 0; sweep < options.maxIterations && sweeps.mayBegin(); ++sweep) {
        chain.sweep(donors);
        sweeps.finishOne();
    }
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
std::vector<CompletedColumns> completedCopies(const ImputationTable& start,
                                              const ImputationOptions& options,
                                              Sweeps& sweeps) {
    const auto m = static_cast<std::size_t>(options.m);
    const std::uint64_t usual = usualDraws(start, options);
    const auto chainFrom = [&start](SplitMix64 random) {
        return ChainedImputation{.table = start, .random = random};
    };
    std::vector<CompletedColumns> copies(m);
    std::vector<std::uint64_t> draws(m);
    parallelFor(m, hardwareThreads(), [&](std::size_t i) {
        SplitMix64 random(options.seed);
        random.skip(i * usual);
        ChainedImputation chain = chainFrom(random);
        run(chain, options, sweeps);
        copies[i] = chain.table.completed();
        draws[i] = chain.draws;
    });
    SplitMix64 random(options.seed);
    std::uint64_t taken = 0;
    for (std::size_t i = 0; i < m && !sweeps.isEnded(); ++i) {
        if (taken != i * usual) {
            ChainedImputation chain = chainFrom(random);
            run(chain, options, sweeps);
            copies[i] = chain.table.completed();
            draws[i] = chain.draws;
        }
        random.skip(draws[i]);
        taken += draws[i];
    }
    return copies;
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
    const std::optional<ImputationTable> start = ImputationTable::filledWithMeans(columns);
    if (!start || options.m < 1 || options.maxIterations < 1 ||
        options.variableNames.size() != columns.size()) {
        return std::nullopt;
    }
    Sweeps sweeps(options, static_cast<double>(options.m * options.maxIterations));
    std::vector<CompletedColumns> copies = completedCopies(*start, options, sweeps);
    if (sweeps.isEnded()) {
        return std::nullopt;
    }
    return MultipleImputationResult{.m = options.m,
                                    .iterations = options.maxIterations,
                                    .imputedDatasets = std::move(copies),
                                    .variableNames = options.variableNames,
                                    .seed = options.seed,
                                    .readiness = readiness(*start, options)};
}

std::optional<PooledEstimate> pooledMean(std::span<const NumericColumn> columns,
                                         const ImputationOptions& options,
                                         const std::string& target,
                                         double confidenceLevel) {
    const auto found = std::ranges::find(options.variableNames, target);
    const auto index = static_cast<std::size_t>(found - options.variableNames.begin());
    if (index >= columns.size()) {
        return std::nullopt;
    }
    const std::optional<MultipleImputationResult> imputed = impute(columns, options);
    if (!imputed) {
        return std::nullopt;
    }
    std::vector<double> means;
    std::vector<double> variances;
    for (const CompletedColumns& copy : imputed->imputedDatasets) {
        const auto n = static_cast<double>(copy[index].size());
        double mean = 0.0;
        for (const std::optional<double>& value : copy[index]) {
            mean += value.value_or(std::numeric_limits<double>::quiet_NaN()) / n;
        }
        double squares = 0.0;
        for (const std::optional<double>& value : copy[index]) {
            squares += value ? (*value - mean) * (*value - mean) : 0.0;
        }
        means.push_back(mean);
        variances.push_back(squares / (n - 1.0) / n);
    }
    return pool(means, variances, confidenceLevel);
}

}  // namespace sorvane::MultipleImputation
