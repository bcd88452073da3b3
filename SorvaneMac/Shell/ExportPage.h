#pragma once

#include "SorvaneMac/Shell/ContentPage.h"

namespace sorvane {

/// Share & export: a button for each format of the report.
class ExportPage final : public ContentPage {
public:
    explicit ExportPage(Workspace& workspace);
};

}  // namespace sorvane
