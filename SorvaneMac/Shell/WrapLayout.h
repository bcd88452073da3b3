#pragma once

#include "SorvaneMac/Shell/RowedLayout.h"

namespace sorvane {

/// Widgets of their own width, going on below where the row is full.
class WrapLayout final : public RowedLayout {
public:
    using RowedLayout::RowedLayout;

    QSize sizeHint() const override;
    QSize minimumSize() const override;

protected:
    std::vector<QRect> places(int width) const override;
};

}  // namespace sorvane
