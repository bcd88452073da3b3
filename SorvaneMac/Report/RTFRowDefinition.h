#pragma once

#include <string_view>
#include <vector>

namespace sorvane {

/// One cell as the definition of its row gives it.
struct RTFCellDefinition {
    /// The right edge, in twips.
    int rightEdge = 0;
    /// In points.
    double topBorder = 0;
    double bottomBorder = 0;
    /// Belongs to the cell on its left.
    bool mergedWithPrevious = false;
};

/// Gathers the controls that define the cells of a row; they hold until the next "trowd".
class RTFRowDefinition {
public:
    /// Returns  whether the control was one of a row definition
    bool apply(std::string_view control, int value);

    const std::vector<RTFCellDefinition>& cells() const { return cells_; }

private:
    enum class Side { none, top, bottom };

    bool applyBorder(std::string_view control, int value);
    double* border();

    std::vector<RTFCellDefinition> cells_;
    RTFCellDefinition pending_;
    /// The side of the cell to which the next border controls belong.
    Side side_ = Side::none;
};

}  // namespace sorvane
