#pragma once

#include "SorvaneMac/Shell/ContentPage.h"

namespace sorvane {

/// Import Data: where files are dropped, and what the last import found.
class ImportPage final : public ContentPage {
public:
    explicit ImportPage(Workspace& workspace);
};

}  // namespace sorvane
