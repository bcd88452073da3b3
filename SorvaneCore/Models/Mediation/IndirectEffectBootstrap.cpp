#include "SorvaneCore/Models/Mediation/IndirectEffectBootstrap.h"

#include <algorithm>
#include <array>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/FastRemainder.h"
#include "SorvaneCore/Numerics/ParallelFor.h"
#include "SorvaneCore/Numerics/SplitMix64.h"

namespace sorvane {

namespace {

/// Rows whose weighted column the first cache level holds beside those it meets.
constexpr std::size_t blockRows = 512;
/// What one thread takes at a time.
constexpr std::size_t chunkResamples = 50;
constexpr double leastShareLeft = 1e-12;

}  // namespace

/// The upper triangle of a matrix of sums of products, the intercept first.
class BootstrapMoments {
public:
    explicit BootstrapMoments(std::size_t size) : size_(size), entries_(size * size) {}

    double& at(std::size_t i, std::size_t j) { return entries_[i * size_ + j]; }
    std::size_t size() const { return size_; }
    void clear() { std::ranges::fill(entries_, 0.0); }

    /// Takes column k out of all later ones; false where next to nothing of it is left.
    bool sweep(std::size_t k, double whole) {
        if (!(at(k, k) > whole * leastShareLeft)) {
            return false;
        }
        for (std::size_t i = k + 1; i < size_; ++i) {
            const double factor = at(k, i) / at(k, k);
            for (std::size_t j = i; j < size_; ++j) {
                at(i, j) -= factor * at(k, j);
            }
        }
        return true;
    }

private:
    std::size_t size_;
    std::vector<double> entries_;
};

struct IndirectEffectBootstrap::Workspace {
    Workspace(std::size_t rows, std::size_t width)
        : counts(rows), moments(width + 1), wholes(width) {}

    std::vector<std::int32_t> counts;
    std::array<double, blockRows> weighted{};
    BootstrapMoments moments;
    /// The diagonal before any sweep.
    std::vector<double> wholes;
};

IndirectEffectBootstrap::IndirectEffectBootstrap(
    std::span<const std::vector<double>* const> covariates,
    const std::vector<double>& x,
    const std::vector<double>& mediator,
    const std::vector<double>& outcome)
    : rows_(x.size()), width_(covariates.size() + 3) {
    std::vector<const std::vector<double>*> columns(covariates.begin(), covariates.end());
    columns.insert(columns.end(), {&x, &mediator, &outcome});
    deviations_.reserve(rows_ * width_);
    for (const std::vector<double>* column : columns) {
        const double mean = SampleMoments::mean(*column);
        for (const double value : *column) {
            deviations_.push_back(value - mean);
        }
    }
}

void IndirectEffectBootstrap::draw(std::uint64_t seed,
                                   std::size_t resample,
                                   Workspace& workspace) const {
    std::ranges::fill(workspace.counts, 0);
    const FastRemainder rowOf(rows_);
    SplitMix64 draws(seed);
    draws.skip(resample * rows_);
    for (std::size_t i = 0; i < rows_; ++i) {
        ++workspace.counts[rowOf(draws.next())];
    }
}

/// Adds the products of a weighted block with `Count` columns from column j on, the first being 1.
template <std::size_t Count>
std::size_t IndirectEffectBootstrap::addProducts(std::size_t i,
                                                 std::size_t j,
                                                 Block block,
                                                 Workspace& workspace) const {
    std::array<const double*, Count> others{};
    for (std::size_t c = 0; c < Count; ++c) {
        others[c] = &deviations_[(j - 1 + c) * rows_ + block.first];
    }
    const auto sums = ColumnKernels::dots<Count>(workspace.weighted.data(), others, block.count);
    for (std::size_t c = 0; c < Count; ++c) {
        workspace.moments.at(i, j + c) += sums[c];
    }
    return j + Count;
}

void IndirectEffectBootstrap::accumulate(Workspace& workspace) const {
    workspace.moments.clear();
    workspace.moments.at(0, 0) = static_cast<double>(rows_);
    for (std::size_t first = 0; first < rows_; first += blockRows) {
        const Block block{.first = first, .count = std::min(blockRows, rows_ - first)};
        // Signed counts become doubles in vector registers.
        std::array<double, blockRows> weights;
        std::copy_n(&workspace.counts[first], block.count, weights.begin());
        // The outcome's own squares do not count.
        for (std::size_t i = 0; i < width_; ++i) {
            workspace.weighted = weights;
            const double* column = i == 0 ? nullptr : &deviations_[(i - 1) * rows_ + first];
            for (std::size_t row = 0; column && row < block.count; ++row) {
                workspace.weighted[row] *= column[row];
            }
            for (std::size_t j = std::max<std::size_t>(i, 1); j <= width_;) {
                switch (width_ - j) {
                    case 0:
                        j = addProducts<1>(i, j, block, workspace);
                        break;
                    case 1:
                        j = addProducts<2>(i, j, block, workspace);
                        break;
                    case 2:
                        j = addProducts<3>(i, j, block, workspace);
                        break;
                    default:
                        j = addProducts<4>(i, j, block, workspace);
                        break;
                }
            }
        }
    }
}

std::optional<double> IndirectEffectBootstrap::estimate(std::uint64_t seed,
                                                        std::size_t resample,
                                                        Workspace& workspace) const {
    draw(seed, resample, workspace);
    accumulate(workspace);
    BootstrapMoments& moments = workspace.moments;
    const std::size_t outcome = width_;
    const std::size_t mediator = outcome - 1;
    const std::size_t x = mediator - 1;
    std::vector<double>& wholes = workspace.wholes;
    for (std::size_t k = 0; k < outcome; ++k) {
        wholes[k] = moments.at(k, k);
    }
    for (std::size_t k = 0; k < outcome; ++k) {
        if (!moments.sweep(k, wholes[k])) {
            return std::nullopt;
        }
    }
    const double a = moments.at(x, mediator) / moments.at(x, x);
    const double b = moments.at(mediator, outcome) / moments.at(mediator, mediator);
    return a * b;
}

std::vector<double> IndirectEffectBootstrap::estimates(std::size_t count,
                                                       std::uint64_t seed) const {
    std::vector<std::optional<double>> products(count);
    const std::size_t chunks = (count + chunkResamples - 1) / chunkResamples;
    parallelFor(chunks, hardwareThreads(), [&](std::size_t chunk) {
        Workspace workspace(rows_, width_);
        const std::size_t first = chunk * chunkResamples;
        for (std::size_t i = first; i < std::min(count, first + chunkResamples); ++i) {
            products[i] = estimate(seed, i, workspace);
        }
    });
    std::vector<double> kept;
    for (const std::optional<double>& product : products) {
        if (product) {
            kept.push_back(*product);
        }
    }
    return kept;
}

}  // namespace sorvane
