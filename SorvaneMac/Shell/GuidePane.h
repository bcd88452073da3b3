#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <QWidget>

#include "SorvaneMac/Shell/Workspace.h"

class QPushButton;
class QStackedWidget;
class QVBoxLayout;

namespace sorvane {

class MethodRecordView;

/// What the program has to say on a screen: what it answers, how to repeat it, how to read it; and
/// what the researcher noted on all of them.
class GuidePane final : public QWidget {
public:
    explicit GuidePane(Workspace& workspace);

    void refresh();
    /// Another pane is shown.
    void leave();

private:
    struct Note {
        StudioScreen screen;
        std::string text;
        bool isStaged;

        bool operator==(const Note&) const = default;
    };

    QWidget* tabs();
    QVBoxLayout* addPage(InspectorTab tab);
    void showAbout(StudioScreen screen);
    void showCoaching(StudioScreen screen);
    void showNotes();

    Workspace& workspace_;
    std::array<QPushButton*, 4> tabButtons_{};
    QStackedWidget* stack_;
    QVBoxLayout* about_;
    MethodRecordView* record_;
    QVBoxLayout* coach_;
    QVBoxLayout* notes_;
    std::optional<Guide> aboutShown_;
    std::optional<StudioScreen> coachOf_;
    std::optional<std::vector<Note>> shownNotes_;
};

}  // namespace sorvane
