#include "SorvaneCore/Numerics/CanonicalLikelihood.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>
#include <utility>

#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane::IRLS {

namespace {

constexpr std::size_t blockRows = 256;
/// What one thread takes at a time; part of the order of summing.
constexpr std::size_t chunkRows = 64 * blockRows;

/// A row as its block sees it: linear predictor in, weight and score out.
struct RowTerms {
    std::array<double, blockRows> eta;
    std::array<double, blockRows> weight;
    std::array<double, blockRows> score;
};

struct LogitRow {
    static double startingEta(double y) { return y > 0.5 ? std::log(3.0) : -std::log(3.0); }
    static double margin(double y, double eta) { return y > 0.5 ? eta : -eta; }
    static double distance(double eta) { return std::abs(eta); }
};

struct LogRow {
    static double startingEta(double y) { return std::log(y + 0.1); }
    static double margin(double /*y*/, double /*eta*/) { return -1.0; }
    static double distance(double eta) { return -eta; }
};

/// Fills weights and scores of shares; the log likelihood of the block.
double logitTerms(RowTerms& rows, const double* y, std::size_t count) {
    // One logarithm for several factors, none of which is below 1e-15.
    constexpr std::size_t factorsPerLogarithm = 16;
    double logLikelihood = 0.0;
    double product = 1.0;
    for (std::size_t i = 0; i < count; ++i) {
        const double eta = rows.eta[i];
        const double odds = std::exp(-std::abs(eta));
        const double larger = std::min(1.0 / (1.0 + odds), 1.0 - smallestProbability);
        const double smaller = std::max(odds / (1.0 + odds), smallestProbability);
        const bool isFitted = (y[i] > 0.5) == (eta >= 0.0);
        rows.weight[i] = larger * smaller;
        rows.score[i] = y[i] > 0.5 ? (isFitted ? smaller : larger) : -(isFitted ? smaller : larger);
        product *= isFitted ? larger : smaller;
        if (i % factorsPerLogarithm == factorsPerLogarithm - 1) {
            logLikelihood += std::log(product);
            product = 1.0;
        }
    }
    return logLikelihood + std::log(product);
}

double logTerms(RowTerms& rows, const double* y, std::size_t count) {
    double logLikelihood = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        const double eta = std::max(rows.eta[i], smallestLogRate);
        const double rate = std::exp(eta);
        rows.weight[i] = rate;
        rows.score[i] = y[i] - rate;
        logLikelihood += y[i] * eta - rate;
    }
    return logLikelihood;
}

/// Sums over the rows of a chunk, block by block.
class ChunkSum {
public:
    ChunkSum(const Observations& data, const double* parameters)
        : data_(data),
          parameters_(parameters),
          columns_(data.cols * blockRows),
          weighted_(blockRows),
          pass_{.evaluation = {.gradient = std::vector<double>(data.cols, 0.0),
                               .negativeHessian = std::vector<double>(data.cols * data.cols, 0.0)},
                .smallestMargin = std::numeric_limits<double>::infinity(),
                .farthest = -std::numeric_limits<double>::infinity()} {}

    template <typename Row>
    Pass over(std::size_t first, std::size_t end) {
        for (; first < end; first += blockRows) {
            count_ = std::min(blockRows, end - first);
            ColumnKernels::gatherColumns(&data_.designMatrix[first * data_.cols], count_,
                                         data_.cols, blockRows, columns_.data());
            addBlock<Row>(&data_.response[first]);
        }
        return std::move(pass_);
    }

private:
    const double* column(std::size_t j) const { return &columns_[j * blockRows]; }

    template <typename Row>
    void addBlock(const double* y) {
        formLinearPredictor<Row>(y);
        if constexpr (std::is_same_v<Row, LogitRow>) {
            pass_.evaluation.objective += logitTerms(rows_, y, count_);
        } else {
            pass_.evaluation.objective += logTerms(rows_, y, count_);
        }
        if (!parameters_) {
            for (std::size_t i = 0; i < count_; ++i) {
                rows_.score[i] += rows_.weight[i] * rows_.eta[i];
            }
        }
        addProducts();
    }

    template <typename Row>
    void formLinearPredictor(const double* y) {
        if (!parameters_) {
            std::transform(y, y + count_, rows_.eta.begin(), Row::startingEta);
            return;
        }
        rows_.eta.fill(0.0);
        for (std::size_t j = 0; j < data_.cols; ++j) {
            ColumnKernels::subtractScaled(-parameters_[j], column(j), rows_.eta.data(), count_);
        }
        for (std::size_t i = 0; i < count_; ++i) {
            pass_.smallestMargin = std::min(pass_.smallestMargin, Row::margin(y[i], rows_.eta[i]));
            pass_.farthest = std::max(pass_.farthest, Row::distance(rows_.eta[i]));
        }
    }

    void addProducts() {
        const std::size_t cols = data_.cols;
        for (std::size_t i = 0; i < cols; ++i) {
            const double* x = column(i);
            pass_.evaluation.gradient[i] += ColumnKernels::dot(x, rows_.score.data(), count_);
            for (std::size_t row = 0; row < count_; ++row) {
                weighted_[row] = x[row] * rows_.weight[row];
            }
            double* products = &pass_.evaluation.negativeHessian[i * cols];
            std::size_t j = i;
            for (; j + 4 <= cols; j += 4) {
                const auto sums = ColumnKernels::dots<4>(
                    weighted_.data(), {column(j), column(j + 1), column(j + 2), column(j + 3)},
                    count_);
                for (std::size_t c = 0; c < 4; ++c) {
                    products[j + c] += sums[c];
                }
            }
            for (; j < cols; ++j) {
                products[j] += ColumnKernels::dot(weighted_.data(), column(j), count_);
            }
        }
    }

    const Observations& data_;
    const double* parameters_;
    std::vector<double> columns_;
    std::vector<double> weighted_;
    RowTerms rows_{};
    std::size_t count_ = 0;
    Pass pass_;
};

void add(std::vector<double>& total, const std::vector<double>& part) {
    std::transform(part.begin(), part.end(), total.begin(), total.begin(), std::plus<>());
}

void add(Pass& total, const Pass& part) {
    total.evaluation.objective += part.evaluation.objective;
    add(total.evaluation.gradient, part.evaluation.gradient);
    add(total.evaluation.negativeHessian, part.evaluation.negativeHessian);
    total.smallestMargin = std::min(total.smallestMargin, part.smallestMargin);
    total.farthest = std::max(total.farthest, part.farthest);
}

void mirrorUpperTriangle(std::vector<double>& matrix, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = i + 1; j < n; ++j) {
            matrix[j * n + i] = matrix[i * n + j];
        }
    }
}

void takeOut(const std::vector<double>& normal, std::vector<double>& vector) {
    const double length = std::inner_product(normal.begin(), normal.end(), vector.begin(), 0.0);
    for (std::size_t j = 0; j < vector.size(); ++j) {
        vector[j] -= length * normal[j];
    }
}

/// The part of the vector that is perpendicular to the others, of length 1; absent where rounding
/// is all that is left of it.
std::optional<std::vector<double>> normalBeyond(const std::vector<std::vector<double>>& others,
                                                std::span<const double> vector) {
    constexpr double smallestPart = 1e-9;
    const auto lengthOf = [](std::span<const double> v) {
        return std::sqrt(std::inner_product(v.begin(), v.end(), v.begin(), 0.0));
    };
    std::vector<double> rest(vector.begin(), vector.end());
    // Twice, as the first pass leaves rounding behind where little is left.
    for (int pass = 0; pass < 2; ++pass) {
        for (const std::vector<double>& other : others) {
            takeOut(other, rest);
        }
    }
    const double length = lengthOf(rest);
    if (!(length > smallestPart * lengthOf(vector))) {
        return std::nullopt;
    }
    for (double& entry : rest) {
        entry /= length;
    }
    return rest;
}

}  // namespace

Pass CanonicalLikelihood::sum(const double* parameters) const {
    const std::size_t chunks = std::max<std::size_t>(1, (data_.rows + chunkRows - 1) / chunkRows);
    std::vector<Pass> parts(chunks);
    parallelFor(chunks, hardwareThreads(), [&](std::size_t chunk) {
        const std::size_t first = chunk * chunkRows;
        const std::size_t end = std::min(first + chunkRows, data_.rows);
        ChunkSum sum(data_, parameters);
        parts[chunk] =
            link_ == Link::logit ? sum.over<LogitRow>(first, end) : sum.over<LogRow>(first, end);
    });
    Pass total = std::move(parts.front());
    for (std::size_t chunk = 1; chunk < chunks; ++chunk) {
        add(total, parts[chunk]);
    }
    mirrorUpperTriangle(total.evaluation.negativeHessian, data_.cols);
    return total;
}

Pass CanonicalLikelihood::at(std::span<const double> parameters) const {
    return sum(parameters.data());
}

Pass CanonicalLikelihood::start() const {
    return sum(nullptr);
}

CanonicalLikelihood::Moves CanonicalLikelihood::movesAlong(
    std::span<const double> direction) const {
    double largestEntry = 0.0;
    for (const double entry : direction) {
        largestEntry = std::max(largestEntry, std::abs(entry));
    }
    Moves moves;
    for (std::size_t row = 0; row < data_.rows; ++row) {
        const double* x = &data_.designMatrix[row * data_.cols];
        double move = 0.0;
        double scale = 0.0;
        for (std::size_t j = 0; j < data_.cols; ++j) {
            move += x[j] * direction[j];
            scale += std::abs(x[j]) * largestEntry;
        }
        // A rate above 0 has an optimum of its own, so that any move leads away from it in the end.
        const double y = data_.response[row];
        const double towards = link_ == Link::logit ? (y > 0.5 ? move : -move)
                               : y == 0.0           ? -move
                                                    : -std::abs(move);
        const double share = scale > 0.0 ? towards / scale : 0.0;
        moves.farthest = std::max(moves.farthest, share);
        if (share < moves.worst) {
            moves.worst = share;
            moves.worstRow = row;
        }
    }
    return moves;
}

bool CanonicalLikelihood::growsForever(std::span<const double> step) const {
    // What cancellation leaves of a zero, which is less than the rows beside a huge outlier differ,
    // and what is surely more than that.
    constexpr double relativeZero = 1e-13;
    constexpr double relativeMove = 1e-6;
    // Beside the endless part of a step is one that leads the other rows to their optimum. It is
    // taken out by holding still, in turn, the row that moves away most.
    std::vector<double> direction(step.begin(), step.end());
    std::vector<std::vector<double>> held;
    for (;;) {
        const Moves moves = movesAlong(direction);
        if (moves.worst >= -relativeZero) {
            return moves.farthest > relativeMove;
        }
        const auto row = data_.designMatrix.subspan(moves.worstRow * data_.cols, data_.cols);
        std::optional<std::vector<double>> normal = normalBeyond(held, row);
        if (!normal) {
            return false;
        }
        held.push_back(std::move(*normal));
        // Of all, and twice, as a part that is left grows in proportion while the direction shrinks.
        for (int pass = 0; pass < 2; ++pass) {
            for (const std::vector<double>& each : held) {
                takeOut(each, direction);
            }
        }
    }
}

}  // namespace sorvane::IRLS
