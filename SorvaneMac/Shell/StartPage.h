#pragma once

#include "SorvaneMac/Shell/Page.h"

class QVBoxLayout;

namespace sorvane {

/// What stands in the middle before there is a dataset.
class StartPage final : public Page {
public:
    explicit StartPage(Workspace& workspace);

    void refresh() override;

private:
    Workspace& workspace_;
    QVBoxLayout* recents_;
};

}  // namespace sorvane
