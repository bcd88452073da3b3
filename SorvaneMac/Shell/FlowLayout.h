#pragma once

#include "SorvaneMac/Shell/RowedLayout.h"

namespace sorvane {

/// Cards that fill their rows: two side by side where both fit, else one a row.
///
/// A widget with the dynamic property "wide" stands alone in its row. The cards of a row are of
/// one height.
class FlowLayout final : public RowedLayout {
public:
    using RowedLayout::RowedLayout;

    QSize sizeHint() const override;
    QSize minimumSize() const override;

protected:
    std::vector<QRect> places(int width) const override;

private:
    /// The width of the left card where this one and the next fit side by side; 0 otherwise.
    int leftWidth(std::size_t first, int width) const;
};

}  // namespace sorvane
