#pragma once

#include "SorvaneMac/Shell/ContentView.h"
#include "SorvaneMac/Shell/Page.h"

namespace sorvane {

/// A screen that is nothing but its content.
class ContentPage : public Page {
public:
    ContentPage(StudioScreen screen, Workspace& workspace);

    void refresh() override;
    void stageFirst() override;

protected:
    ContentView& view() { return *view_; }
    Workspace& workspace() { return workspace_; }

private:
    StudioScreen screen_;
    Workspace& workspace_;
    ContentView* view_;
};

}  // namespace sorvane
