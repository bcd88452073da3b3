#include "SorvaneMac/Shell/MainWindow.h"

#include <algorithm>
#include <array>

#include <QApplication>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QVBoxLayout>

#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Shell/ComputingOverlay.h"
#include "SorvaneMac/Shell/ErrorBanner.h"
#include "SorvaneMac/Shell/FindingsPage.h"
#include "SorvaneMac/Shell/InspectorView.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/MainMenus.h"
#include "SorvaneMac/Shell/NavigationPane.h"
#include "SorvaneMac/Shell/ProjectActions.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/ReviewDesk.h"
#include "SorvaneMac/Shell/StartPage.h"

namespace sorvane {

namespace {

constexpr int navigationWidth = 212;
constexpr int inspectorWidth = 296;
constexpr auto noDataset = "No dataset loaded";
constexpr auto noDatasetHint = "Import a file or create a blank grid";

}  // namespace

MainWindow::MainWindow(StudioState& state, StudioScreens& screens, WindowForm form)
    : workspace_{.state = state, .screens = screens, .desk = std::make_shared<ReviewDesk>(state)},
      form_(form) {
    setAcceptDrops(true);
    resize(1280, 800);
    build();
    workspace_.commitEdits = [this] {
        for (const auto& [screen, page] : pages_) {
            page->commitEdits();
        }
    };
    changes_ = state.fields.observe([this](const AnyField& field) { noteChange(field); });
    actions_ = state.observeActions([this](std::string_view action) {
        if (action == "showInspector") {
            setInspectorShows(true);
        } else if (action == "commitEdits") {
            workspace_.commitEdits();
        } else if (action == "confirmImport") {
            confirmPendingImport(this, workspace_);
        }
    });
}

MainWindow::~MainWindow() {
    changes_.reset();
    actions_.reset();
    // The pages refer to the workspace, which is a member.
    delete takeCentralWidget();
}

void MainWindow::build() {
    const bool focusWasInside = focusWidget() != nullptr;
    delete overlay_;
    delete takeCentralWidget();
    pages_.clear();
    shown_.reset();
    menus_ = std::make_unique<MainMenus>(*this);
    buildPanes();
    buildStatus();
    overlay_ = new ComputingOverlay(centralWidget(), workspace_.state);
    screenChanged_ = true;
    refreshNow();
    if (focusWasInside) {
        navigation_->takeFocus();
    }
}

void MainWindow::buildPanes() {
    navigation_ =
        new NavigationPane([this](StudioScreen screen) { workspace_.state.selection.set(screen); });
    banner_ = new ErrorBanner(workspace_.state);
    stack_ = new QStackedWidget;
    start_ = new StartPage(workspace_);
    stack_->addWidget(start_);
    auto* middle = new QWidget;
    middle->setProperty("ground", true);
    auto* column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(banner_);
    column->addWidget(stack_, 1);
    inspector_ = new InspectorView(workspace_);

    auto* panes = new QSplitter;
    panes_ = panes;
    panes->setHandleWidth(1);
    panes->setChildrenCollapsible(false);
    panes->addWidget(navigation_);
    panes->addWidget(middle);
    panes->addWidget(inspector_);
    panes->setStretchFactor(1, 1);
    navigation_->setMinimumWidth(Theme::px(130));
    inspector_->setMinimumWidth(Theme::px(230));
    middle->setMinimumWidth(Theme::px(330));
    panes->setSizes({std::max(Theme::px(navigationWidth), navigation_->suitableWidth()), width(),
                     Theme::px(inspectorWidth)});
    // The overlay lies over the panes and is none of them.
    auto* center = new QWidget;
    auto* whole = new QVBoxLayout(center);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(panes);
    setCentralWidget(center);
}

void MainWindow::buildStatus() {
    delete statusBar();
    auto* bar = new QStatusBar;
    bar->setSizeGripEnabled(false);
    setStatusBar(bar);
    for (QLabel** label : {&sizeStatus_, &missingStatus_, &weightStatus_}) {
        *label = Labels::line("");
        bar->addWidget(*label);
    }
    messageStatus_ = Labels::line("");
    bar->addPermanentWidget(messageStatus_);
}

MainWindow::Reach MainWindow::reachOf(const AnyField& field) {
    constexpr std::array<std::string_view, 12> frameOnly = {
        "researcherNotes",    "inspectorPane",  "inspectorTab",          "saveStatusMessage",
        "selectedDatasetRow", "projectMessage", "selectedDatasetColumn", "projectError",
        "isComputing",        "computingLabel", "computingProgress",     "computingCancellable"};
    return std::find(frameOnly.begin(), frameOnly.end(), field.name()) == frameOnly.end()
               ? Reach::screen
               : Reach::frame;
}

void MainWindow::noteChange(const AnyField& field) {
    const StudioState& state = workspace_.state;
    for (const auto* message :
         {&state.projectError, &state.saveStatusMessage, &state.projectMessage}) {
        if (message == &field && message->get()) {
            latestMessage_ = message;
        }
    }
    screenChanged_ = screenChanged_ || reachOf(field) == Reach::screen;
    datasetChanged_ = datasetChanged_ || field.name() == "dataset";
    if (!isScheduled_) {
        isScheduled_ = true;
        QMetaObject::invokeMethod(
            this, [this] { refreshNow(); }, Qt::QueuedConnection);
    }
}

void MainWindow::refreshNow() {
    showPage();
    if (std::exchange(screenChanged_, false)) {
        page().refresh();
    }
    refreshFrame();
    // What the seeds and the drawing changed is drawn with it.
    isScheduled_ = false;
}

void MainWindow::showPage() {
    const StudioScreen screen = workspace_.state.selection.get();
    if (std::exchange(datasetChanged_, false) || shown_ != screen) {
        workspace_.screens.appear(screen);
        screenChanged_ = true;
    }
    shown_ = screen;
    stack_->setCurrentWidget(&page());
}

Page& MainWindow::page() {
    if (workspace_.state.showsStartPage()) {
        return *start_;
    }
    Page*& page = pages_[workspace_.state.selection.get()];
    if (!page) {
        page = Page::make(workspace_.state.selection.get(), workspace_);
        stack_->addWidget(page);
    }
    return *page;
}

void MainWindow::refreshFrame() {
    const StudioState& state = workspace_.state;
    const bool hasData = state.hasData();
    navigation_->showDataset(
        hasData ? qtText(state.dataset().name) : QString(noDataset),
        hasData ? qtText(DatasetText::size(state.dataset())) : QString(noDatasetHint));
    navigation_->select(state.selection.get());
    banner_->refresh();
    inspector_->setVisible(inspectorShows());
    if (inspectorShows()) {
        inspector_->refresh();
    }
    overlay_->refresh();
    panes_->setEnabled(!state.isComputing.get());
    refreshStatus();
    menus_->refresh();
    // The placeholder shows the mark of changes that are not saved.
    const std::optional<std::string>& place = state.currentProjectURL.get();
    const QString name =
        place ? fromPath(toPath(qtText(*place)).filename()) : qtText(state.dataset().name);
    setWindowTitle(hasData || place ? name + "[*] — Sorvane" : QString("Sorvane[*]"));
    setWindowModified(state.hasUnsavedWork());
}

void MainWindow::refreshStatus() {
    const StudioState& state = workspace_.state;
    const bool hasData = state.hasData();
    sizeStatus_->setText(hasData ? qtText(DatasetText::size(state.dataset())) : noDataset);
    missingStatus_->setText(hasData ? qtText(DatasetText::missing(state.dataset()))
                                    : noDatasetHint);
    weightStatus_->setText("Weights on");
    weightStatus_->setVisible(hasData && workspace_.screens.areWeightsActive());
    messageStatus_->setText(latestMessage_ ? qtText(latestMessage_->get().value_or("")) : "");
}

bool MainWindow::prefersFullWidth(StudioScreen screen) {
    return screen == StudioScreen::findings || screen == StudioScreen::dataPreview ||
           screen == StudioScreen::variableTypes || screen == StudioScreen::instrumentMap ||
           screen == StudioScreen::userGuide || screen == StudioScreen::export_;
}

bool& MainWindow::inspectorWish() {
    return prefersFullWidth(workspace_.state.selection.get()) ? inspectorOverWidePage_
                                                              : inspectorBeside_;
}

bool MainWindow::inspectorShows() const {
    const bool wish = prefersFullWidth(workspace_.state.selection.get()) ? inspectorOverWidePage_
                                                                         : inspectorBeside_;
    return wish && hasInspector();
}

bool MainWindow::hasInspector() const {
    return form_ == WindowForm::workbench && !workspace_.state.showsStartPage();
}

void MainWindow::setInspectorShows(bool shows) {
    inspectorWish() = shows;
    refreshFrame();
}

void MainWindow::applyTheme() {
    workspace_.commitEdits();
    Theme::apply(*static_cast<QApplication*>(QCoreApplication::instance()), appearance_, scale_);
    build();
}

void MainWindow::setAppearance(Appearance appearance) {
    appearance_ = appearance;
    applyTheme();
}

void MainWindow::setScale(double scale) {
    scale_ = std::clamp(scale, 1.0, 2.0);
    applyTheme();
}

void MainWindow::assembleReport() {
    workspace_.state.selection.set(StudioScreen::findings);
    refreshNow();
    static_cast<FindingsPage&>(page()).assemble();
}

void MainWindow::goToNeighbour(int distance) {
    const std::vector<StudioScreen>& all = allStudioScreens();
    const auto count = static_cast<int>(all.size());
    const auto here = static_cast<int>(workspace_.state.selection.get());
    const int next = std::clamp(here + distance, 0, count - 1);
    workspace_.state.selection.set(all[static_cast<std::size_t>(next)]);
}

void MainWindow::focusNextPane() {
    const QWidget* focused = focusWidget();
    if (focused && navigation_->isAncestorOf(focused)) {
        QWidget* first = page().nextInFocusChain();
        while (first != &page() &&
               (!page().isAncestorOf(first) || !(first->focusPolicy() & Qt::TabFocus) ||
                !first->isVisibleTo(&page()))) {
            first = first->nextInFocusChain();
        }
        first->setFocus(Qt::ShortcutFocusReason);
    } else if (focused && stack_->isAncestorOf(focused) && inspector_->isVisible()) {
        inspector_->takeFocus();
    } else {
        navigation_->takeFocus();
    }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls() && !workspace_.state.isComputing.get()) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile()) {
            event->acceptProposedAction();
            openFile(this, workspace_, toPath(url.toLocalFile()));
            return;
        }
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (mayLeave(this, workspace_)) {
        QMainWindow::closeEvent(event);
    } else {
        event->ignore();
    }
}

WindowMemory MainWindow::memory() const {
    const QByteArray geometry = saveGeometry();
    const QList<int> sizes = panes_->sizes();
    return {.geometry = {geometry.begin(), geometry.end()},
            .panes = {sizes.begin(), sizes.end()},
            .inspectorBeside = inspectorBeside_,
            .inspectorOverWidePage = inspectorOverWidePage_,
            .appearance = appearance_,
            .scale = scale_};
}

void MainWindow::recall(const WindowMemory& memory) {
    inspectorBeside_ = memory.inspectorBeside;
    inspectorOverWidePage_ = memory.inspectorOverWidePage;
    appearance_ = memory.appearance;
    scale_ = std::clamp(memory.scale, 1.0, 2.0);
    applyTheme();
    restoreGeometry({reinterpret_cast<const char*>(memory.geometry.data()),
                     static_cast<qsizetype>(memory.geometry.size())});
    panes_->setSizes({memory.panes.begin(), memory.panes.end()});
}

bool MainWindow::event(QEvent* event) {
    if (event->type() == QEvent::ThemeChange && appearance_ == Appearance::system) {
        applyTheme();
    }
    return QMainWindow::event(event);
}

}  // namespace sorvane
