#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace sorvane {

/// Finds the donors whose predictions are nearest to another, by a search among sorted ones.
///
/// Returns    what sorting all donors by distance would put first, equal distances in the order of
///            the donors
/// Cost       O(d log d) once, about O(log d + k) a search
class NearestDonors {
public:
    /// `predictions` holds one per donor, in the order of the donors; `count` is k, at least 1.
    NearestDonors(std::span<const double> predictions, std::size_t count);

    /// The position of the `choice`-th nearest donor, counted from 0 and below k.
    std::size_t donor(double prediction, std::size_t choice);
    /// How many there are to choose from.
    std::size_t count() const { return count_; }

private:
    /// Donors of one prediction; their positions stand together, ascending.
    struct Level {
        double prediction = 0.0;
        std::size_t first = 0;
        std::size_t count = 0;
    };
    void collect(const Level& level, double distance);

    std::vector<std::size_t> order_;
    std::vector<Level> levels_;
    std::size_t count_;
    /// Distances and positions of the donors found.
    std::vector<std::pair<double, std::size_t>> found_;
};

}  // namespace sorvane
