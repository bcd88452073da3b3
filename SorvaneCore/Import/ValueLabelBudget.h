#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

#include "SorvaneCore/Dataset/ValueLabels.h"

namespace sorvane {

/// How much memory the sets of value labels may take, and how much they may come to when they are
/// written out for each variable. Each set that a file holds fits, unless the file names one text for
/// a great many values.
class ValueLabelBudget {
public:
    /// For a file of so many bytes.
    explicit ValueLabelBudget(std::size_t fileBytes)
        : left_(floor + std::min(perByte * fileBytes, most)) {}

    /// Takes what a label needs.
    ///
    /// Returns    false when there is not so much left; nothing is taken then
    bool take(std::size_t textBytes) {
        const std::size_t wanted = bytesPerLabel + textBytes;
        const bool fits = wanted <= left_;
        left_ -= fits ? wanted : 0;
        return fits;
    }

    /// Whether so many labels could fit.
    bool canTake(std::size_t labels) const { return labels <= left_ / bytesPerLabel; }
    /// Takes what a variable with labels of that size comes to; false when there is not so much
    /// left, and then it has to do without them.
    bool takeUse(std::size_t bytes) {
        const bool fits = bytes <= usesLeft_;
        usesLeft_ -= fits ? bytes : 0;
        return fits;
    }

    /// How much is left, to be set again when a set that did not fit whole is left out.
    std::size_t left() const { return left_; }
    void reset(std::size_t left) { left_ = left; }

private:
    /// Some 700,000 labels, whatever the size of the file.
    static constexpr std::size_t floor = std::size_t{96} << 20;
    /// A label takes 10 bytes of a file at the least.
    static constexpr std::size_t perByte = 16;
    static constexpr std::size_t most = std::size_t{1} << 30;
    /// Of a map's entry of two texts.
    static constexpr std::size_t bytesPerLabel = 128;

    std::size_t left_;
    /// Some 7 million labels.
    std::size_t usesLeft_ = most;
};

/// A set of labels, and what it took of the budget.
struct PricedLabels {
    ValueLabels labels;
    std::size_t bytes = 0;
};

/// What the user is told when the budget did not last.
inline std::string tooManyLabelsNote() {
    return "Value labels of some variables were left out, as there are too many.";
}

}  // namespace sorvane
