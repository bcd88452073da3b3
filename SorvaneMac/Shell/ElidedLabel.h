#pragma once

#include <QLabel>

namespace sorvane {

/// A line that ends in "…" where it does not fit.
class ElidedLabel final : public QLabel {
public:
    ElidedLabel();

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace sorvane
