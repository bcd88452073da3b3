#pragma once

#include <vector>

#include "SorvaneMac/Drafting/DraftBoard.h"
#include "SorvaneMac/Shell/CardFrame.h"
#include "SorvaneMac/Shell/Workspace.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace sorvane {

/// Puts staged findings into words with a language model on this machine: its settings, what to
/// draft, the draft as it grows, and what is to be said of it.
class IntelligenceCard final : public CardFrame {
public:
    explicit IntelligenceCard(Workspace& workspace);

    /// Brings settings and findings up to date with the fields.
    void refresh();

private:
    void addSettings();
    void addChoice();
    void addDraft();
    void addFeedback();
    void refreshSettings();
    void refreshDraft();
    void draft();
    void rate(IntelligenceFeedback::Rating rating);

    Workspace& workspace_;
    DraftBoard board_;
    std::vector<ReportItem> offered_;
    QCheckBox* isOn_;
    QLineEdit* address_;
    QLineEdit* model_;
    QLabel* reason_;
    QLabel* remedy_;
    QComboBox* source_;
    QPushButton* start_;
    std::vector<QPushButton*> refinements_;
    QLabel* text_;
    QLabel* flag_;
    QLabel* failure_;
    QPushButton* copy_;
    QLabel* helpful_;
    std::vector<QPushButton*> ratings_;
    QLabel* thanks_;
};

}  // namespace sorvane
