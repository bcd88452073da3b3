#pragma once

#include <QFrame>

#include "SorvaneMac/State/StudioState.h"

class QLabel;

namespace sorvane {

/// What went wrong, above the screen, until it is put away.
class ErrorBanner final : public QFrame {
public:
    explicit ErrorBanner(StudioState& state);

    void refresh();

private:
    StudioState& state_;
    QLabel* text_;
};

}  // namespace sorvane
