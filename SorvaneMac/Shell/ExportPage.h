#pragma once

#include <vector>

#include "SorvaneMac/Shell/ContentPage.h"

class QPushButton;

namespace sorvane {

/// Share & export: a button for each format of the report.
class ExportPage final : public ContentPage {
public:
    explicit ExportPage(Workspace& workspace);

    /// The buttons are off while there is nothing to export; the page says what is missing.
    void refresh() override;

private:
    std::vector<QPushButton*> buttons_;
};

}  // namespace sorvane
