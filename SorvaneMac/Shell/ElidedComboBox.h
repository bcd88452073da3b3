#pragma once

#include <QComboBox>

namespace sorvane {

/// A choice whose text ends in "…" where it does not fit.
class ElidedComboBox final : public QComboBox {
protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace sorvane
