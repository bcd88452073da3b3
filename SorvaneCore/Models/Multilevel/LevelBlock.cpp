#include "SorvaneCore/Models/Multilevel/LevelBlock.h"

#include <cmath>

#include "SorvaneCore/Numerics/BlockedCholesky.h"

namespace sorvane {

LevelBlock::LevelBlock(std::size_t levels, bool isDiagonal)
    : levels_(levels),
      isDiagonal_(isDiagonal),
      entries_(isDiagonal ? levels : levels * levels, 0.0) {}

void LevelBlock::scaleAndAddIdentity(double factor) {
    for (double& entry : entries_) {
        entry *= factor;
    }
    for (std::size_t level = 0; level < levels_; ++level) {
        row(level)[level] += 1.0;
    }
}

bool LevelBlock::factor(unsigned threads) {
    if (!isDiagonal_) {
        return BlockedCholesky::factor(entries_, levels_, threads);
    }
    bool isPositive = true;
    for (double& entry : entries_) {
        isPositive = isPositive && entry > 0.0 && std::isfinite(entry);
        entry = std::sqrt(entry);
    }
    return isPositive;
}

double LevelBlock::logDeterminant() const {
    double sum = 0.0;
    for (std::size_t level = 0; level < levels_; ++level) {
        sum += std::log(entries_[isDiagonal_ ? level : level * levels_ + level]);
    }
    return 2.0 * sum;
}

void LevelBlock::solveLower(std::span<double> b, std::size_t width) const {
    if (!isDiagonal_) {
        BlockedCholesky::solveLower(entries_, levels_, b, width);
        return;
    }
    for (std::size_t i = 0; i < b.size(); ++i) {
        b[i] /= entries_[i / width];
    }
}

void LevelBlock::solveLowerTransposed(std::span<double> b, std::size_t width) const {
    if (!isDiagonal_) {
        BlockedCholesky::solveLowerTransposed(entries_, levels_, b, width);
        return;
    }
    solveLower(b, width);
}

}  // namespace sorvane
