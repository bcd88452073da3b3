#pragma once

#include <vector>

#include "SorvaneMac/Shell/ContentPage.h"

class QCheckBox;
class QPushButton;

namespace sorvane {

class IntelligenceCard;

/// Share & export: a button for each format of the report, the packet and the live review for the
/// tablet viewer, and drafting.
class ExportPage final : public ContentPage {
public:
    explicit ExportPage(Workspace& workspace);

    /// The buttons are off while there is nothing to export; the page says what is missing.
    void refresh() override;

private:
    QWidget* reportCard();
    QWidget* reviewCard();

    std::vector<QPushButton*> buttons_;
    QCheckBox* preview_ = nullptr;
    IntelligenceCard* intelligence_ = nullptr;
};

}  // namespace sorvane
