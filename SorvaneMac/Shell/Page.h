#pragma once

#include <QWidget>

#include "SorvaneMac/Shell/Workspace.h"

namespace sorvane {

/// The view of one screen.
class Page : public QWidget {
public:
    using QWidget::QWidget;

    /// Brings what is shown up to date with the fields.
    virtual void refresh() = 0;
    /// What a key for "add to report" does here; most pages stage their first finding.
    virtual void stageFirst() {}

    /// Copies what is selected; false where the page has no selection of its own.
    virtual bool copySelection() { return false; }

    /// Pastes into what is selected; false where the page does not take it.
    virtual bool pasteSelection() { return false; }

    /// Brings what is still being typed into the state.
    virtual void commitEdits() {}

    static Page* make(StudioScreen screen, Workspace& workspace);
};

}  // namespace sorvane
