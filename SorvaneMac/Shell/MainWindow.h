#pragma once

#include <map>
#include <memory>

#include <QMainWindow>

#include "SorvaneMac/Shell/Page.h"
#include "SorvaneMac/Shell/WindowMemory.h"

class QLabel;
class QSplitter;
class QStackedWidget;

namespace sorvane {

class ComputingOverlay;
class ErrorBanner;
class InspectorView;
class MainMenus;
class NavigationPane;

/// How the window is laid out: with its three panes, or as navigation and screen alone, a form in
/// which layouts are tried.
enum class WindowForm { workbench, splitLab };

/// The window: navigation, screen, inspector; menus above and the state of the data below.
///
/// It draws what the fields hold, once for each turn of the event loop in which one changed.
class MainWindow final : public QMainWindow {
public:
    MainWindow(StudioState& state, StudioScreens& screens, WindowForm form = WindowForm::workbench);
    ~MainWindow() override;

    Workspace& workspace() { return workspace_; }
    /// The page that stands in the middle.
    Page& page();
    /// Draws at once what has changed.
    void refreshNow();

    void setAppearance(Appearance appearance);
    /// 1 for the size of the design, up to 2.
    void setScale(double scale);
    double scale() const { return scale_; }
    Appearance appearance() const { return appearance_; }
    /// Whether there is an inspector to show or hide.
    bool hasInspector() const;
    bool inspectorShows() const;
    void setInspectorShows(bool shows);
    WindowMemory memory() const;
    /// Takes the size, panes and looks that a window of a former session had.
    void recall(const WindowMemory& memory);
    void assembleReport();
    void goToNeighbour(int distance);
    /// Moves the focus to the next of the three panes.
    void focusNextPane();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

private:
    /// The fields that only the frame around the screen shows.
    enum class Reach { frame, screen };
    static Reach reachOf(const AnyField& field);

    void build();
    void buildPanes();
    void buildStatus();
    void applyTheme();
    void noteChange(const AnyField& field);
    void showPage();
    void refreshFrame();
    void refreshStatus();
    bool& inspectorWish();
    static bool prefersFullWidth(StudioScreen screen);

    Workspace workspace_;
    const WindowForm form_;
    Appearance appearance_ = Appearance::system;
    double scale_ = 1.0;
    bool inspectorBeside_ = true;
    bool inspectorOverWidePage_ = false;

    std::unique_ptr<MainMenus> menus_;
    QSplitter* panes_ = nullptr;
    NavigationPane* navigation_ = nullptr;
    ErrorBanner* banner_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    InspectorView* inspector_ = nullptr;
    ComputingOverlay* overlay_ = nullptr;
    QLabel* sizeStatus_ = nullptr;
    QLabel* missingStatus_ = nullptr;
    QLabel* weightStatus_ = nullptr;
    QLabel* messageStatus_ = nullptr;
    Page* start_ = nullptr;
    std::map<StudioScreen, Page*> pages_;
    std::optional<StudioScreen> shown_;

    /// What was said last; nothing before the first word.
    const Field<std::optional<std::string>>* latestMessage_ = nullptr;
    bool isScheduled_ = false;
    bool screenChanged_ = true;
    bool datasetChanged_ = false;
    Subscription changes_;
    Subscription actions_;
};

}  // namespace sorvane
