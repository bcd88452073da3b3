#include "SorvaneMac/Shell/MainMenus.h"

#include <QActionGroup>
#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QMetaObject>

#include "SorvaneMac/Platform/FileDialogs.h"
#include "SorvaneMac/Shell/ChartView.h"
#include "SorvaneMac/Shell/MainWindow.h"
#include "SorvaneMac/Shell/ProjectActions.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/ReportExporting.h"
#include "SorvaneMac/Shell/ReviewSharing.h"

namespace sorvane {

namespace {

constexpr double scaleStep = 0.25;
constexpr auto aboutText =
    "Sorvane 0.1.0\n\nA desktop statistics workbench for survey and scale research. All analysis "
    "runs on this machine.";

void showScreen(MainWindow& window, StudioScreen screen) {
    window.workspace().state.selection.set(screen);
}

/// Hands an editing command to whatever has the focus; false where that does not know it.
bool invokeEdit(const char* slot) {
    QWidget* focused = QApplication::focusWidget();
    if (!focused || focused->metaObject()->indexOfSlot(QMetaObject::normalizedSignature(
                        (QByteArray(slot) + "()").constData())) < 0) {
        return false;
    }
    return QMetaObject::invokeMethod(focused, slot);
}

}  // namespace

MainMenus::MainMenus(MainWindow& window) : window_(window) {
    // Not at once: one of them may be what is being chosen from.
    for (QMenu* former :
         window_.menuBar()->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly)) {
        former->deleteLater();
    }
    window_.menuBar()->clear();
    window_.menuBar()->setNativeMenuBar(true);
    buildFile();
    buildEdit();
    buildData();
    buildAnalyze();
    buildView();
    buildHelp();
}

QAction* MainMenus::add(QMenu& menu,
                        const QString& label,
                        const QKeySequence& keys,
                        std::function<void()> action) {
    QAction* made = menu.addAction(label);
    made->setShortcut(keys);
    QObject::connect(made, &QAction::triggered, &menu, [action = std::move(action)] { action(); });
    return made;
}

void MainMenus::buildFile() {
    QMenu& menu = *window_.menuBar()->addMenu("&File");
    Workspace& workspace = window_.workspace();
    add(menu, "&New Blank Grid", QKeySequence::New, [&workspace] { openBlankGrid(workspace); });
    add(menu, "&Open Project…", QKeySequence::Open,
        [this, &workspace] { openProjectFromDialog(&window_, workspace); });
    recentProjects_ = menu.addMenu("Open R&ecent Project");
    QObject::connect(&menu, &QMenu::aboutToShow, recentProjects_, [this] { listRecentProjects(); });
    withData_.push_back(add(menu, "&Save Project", QKeySequence::Save,
                            [this, &workspace] { saveProject(&window_, workspace); }));
    withData_.push_back(add(menu, "Save Project &As…", QKeySequence("Ctrl+Shift+S"),
                            [this, &workspace] { saveProjectAs(&window_, workspace); }));
    menu.addSeparator();
    add(menu, "&Import Data…", QKeySequence("Ctrl+I"),
        [this, &workspace] { importFromDialog(&window_, workspace); });
    recent_ = menu.addMenu("Import &Recent");
    QObject::connect(&menu, &QMenu::aboutToShow, recent_, [this] { listRecentFiles(); });
    add(menu, "&Paste Data…", QKeySequence("Ctrl+Shift+V"),
        [this, &workspace] { pasteFromDialog(&window_, workspace); });
    add(menu, "Open &Sample Study", {}, [&workspace] { openSample(workspace); });
    menu.addSeparator();
    withData_.push_back(add(menu, "Export &Dataset…", {},
                            [this] { exportDatasetFromDialog(&window_, window_.workspace()); }));
    QMenu& exports = *menu.addMenu("&Export Report");
    for (const ReportFormat format : {ReportFormat::pdf, ReportFormat::docx, ReportFormat::rtf,
                                      ReportFormat::md, ReportFormat::draft}) {
        withReport_.push_back(
            add(exports, exportLabel(format),
                format == ReportFormat::pdf ? QKeySequence("Ctrl+E") : QKeySequence(),
                [this, format] { exportReport(&window_, window_.workspace(), format); }));
    }
    add(menu, "Export to iPa&d…", {}, [this] { exportToIPad(&window_, window_.workspace()); });
    add(menu, "Prese&nt on iPad…", {}, [this] { presentOnIPad(&window_, window_.workspace()); });
    menu.addSeparator();
    add(menu, "&Close Window", QKeySequence::Close, [this] { window_.close(); });
    add(menu, "&Quit", QKeySequence("Ctrl+Q"), [this] { window_.close(); });
}

void MainMenus::addEdit(QMenu& menu,
                        const QString& label,
                        const QKeySequence& keys,
                        const char* slot) {
    add(menu, label, keys, [slot] { invokeEdit(slot); });
}

void MainMenus::buildEdit() {
    QMenu& menu = *window_.menuBar()->addMenu("&Edit");
    add(menu, "&Undo", QKeySequence::Undo, [this] {
        // A field that is typed in has an undo of its own; elsewhere it is the data's.
        if (!invokeEdit("undo")) {
            undoDataChange();
        }
    });
    addEdit(menu, "&Redo", QKeySequence::Redo, "redo");
    menu.addSeparator();
    addEdit(menu, "Cu&t", QKeySequence::Cut, "cut");
    add(menu, "&Copy", QKeySequence::Copy, [this] {
        QWidget* focused = QApplication::focusWidget();
        if (const auto* chart = dynamic_cast<const ChartView*>(focused)) {
            chart->copyPicture();
        } else if (!window_.page().copySelection() && focused) {
            QMetaObject::invokeMethod(focused, "copy");
        }
    });
    add(menu, "&Paste", QKeySequence::Paste, [this] {
        if (!window_.page().pasteSelection()) {
            invokeEdit("paste");
        }
    });
    addEdit(menu, "Select &All", QKeySequence::SelectAll, "selectAll");
    menu.addSeparator();
    // What a page can do beyond that, such as finding, it brings with its own keys.
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [this, &menu] {
        for (QAction* former : std::exchange(ofPage_, window_.page().actions())) {
            menu.removeAction(former);
        }
        menu.addActions(ofPage_);
    });
}

void MainMenus::undoDataChange() {
    StudioState& state = window_.workspace().state;
    const std::optional<std::string> lost = state.undoLoses();
    if (!lost || window_.workspace().confirm(&window_, {.title = "Undo the data change?",
                                                        .text = qtText(*lost),
                                                        .confirmLabel = "Undo"})) {
        state.undoLastDataChange();
    }
}

void MainMenus::buildData() {
    QMenu& menu = *window_.menuBar()->addMenu("&Data");
    for (const StudioScreen screen : allStudioScreens()) {
        const StudioSection group = section(screen);
        if (group == StudioSection::project || group == StudioSection::instrument) {
            add(menu, qtText(title(screen)).replace('&', "&&"), {},
                [this, screen] { showScreen(window_, screen); });
        }
    }
    menu.addSeparator();
    undoData_ = add(menu, "Undo Data Change", {}, [this] { undoDataChange(); });
    withData_.push_back(add(menu, "Select Likert Items", {}, [this] {
        window_.workspace().state.selectLikertCandidateItemsForReliability();
    }));
}

void MainMenus::buildAnalyze() {
    QMenu& menu = *window_.menuBar()->addMenu("&Analyze");
    bool inAdvanced = false;
    for (const StudioScreen screen : allStudioScreens()) {
        const StudioSection group = section(screen);
        if (group != StudioSection::evidence && group != StudioSection::advanced) {
            continue;
        }
        if (inAdvanced != isAdvanced(screen)) {
            menu.addSeparator();
            inAdvanced = isAdvanced(screen);
        }
        add(menu, qtText(title(screen)).replace('&', "&&"), {},
            [this, screen] { showScreen(window_, screen); });
    }
    menu.addSeparator();
    withData_.push_back(add(menu, "Add to Report", QKeySequence("Ctrl+R"),
                            [this] { window_.page().stageFirst(); }));
    withFindings_.push_back(add(menu, "Assemble Report", QKeySequence("Ctrl+Shift+A"),
                                [this] { window_.assembleReport(); }));
}

void MainMenus::buildView() {
    QMenu& menu = *window_.menuBar()->addMenu("&View");
    inspector_ = add(menu, "Inspector", QKeySequence("Ctrl+Shift+I"),
                     [this] { window_.setInspectorShows(!window_.inspectorShows()); });
    inspector_->setCheckable(true);
    add(menu, "Next Pane", QKeySequence("F6"), [this] { window_.focusNextPane(); });
    menu.addSeparator();
    add(menu, "Former Screen", QKeySequence("Ctrl+PgUp"), [this] { window_.goToNeighbour(-1); });
    add(menu, "Next Screen", QKeySequence("Ctrl+PgDown"), [this] { window_.goToNeighbour(1); });
    int number = 0;
    for (const StudioScreen screen :
         {StudioScreen::overview, StudioScreen::instrumentMap, StudioScreen::descriptives,
          StudioScreen::multilevel, StudioScreen::findings}) {
        add(menu, qtText(displayName(section(screen))),
            QKeySequence("Ctrl+" + QString::number(++number)),
            [this, screen] { showScreen(window_, screen); });
    }
    menu.addSeparator();
    add(menu, "Larger", QKeySequence::ZoomIn,
        [this] { window_.setScale(window_.scale() + scaleStep); });
    add(menu, "Smaller", QKeySequence::ZoomOut,
        [this] { window_.setScale(window_.scale() - scaleStep); });
    add(menu, "Normal Size", QKeySequence("Ctrl+0"), [this] { window_.setScale(1.0); });
    buildAppearance(menu);
}

void MainMenus::buildAppearance(QMenu& view) {
    QMenu& menu = *view.addMenu("Appearance");
    const std::pair<const char*, Appearance> choices[] = {{"As the System", Appearance::system},
                                                          {"Light", Appearance::light},
                                                          {"Dark", Appearance::dark}};
    auto* group = new QActionGroup(&menu);
    for (const auto& choice : choices) {
        const Appearance appearance = choice.second;
        QAction* made =
            add(menu, choice.first, {}, [this, appearance] { window_.setAppearance(appearance); });
        made->setCheckable(true);
        made->setChecked(window_.appearance() == appearance);
        group->addAction(made);
    }
}

void MainMenus::buildHelp() {
    QMenu& menu = *window_.menuBar()->addMenu("&Help");
    add(menu, "User Guide", QKeySequence::HelpContents,
        [this] { showScreen(window_, StudioScreen::userGuide); });
    add(menu, "Guide to This Screen", QKeySequence("Shift+F1"), [this] {
        window_.workspace().state.inspectorPane.set(InspectorPane::guide);
        window_.setInspectorShows(true);
    });
    menu.addSeparator();
    add(menu, "About Sorvane", {},
        [this] { QMessageBox::about(&window_, "About Sorvane", aboutText); });
}

void MainMenus::listRecentFiles() {
    StudioState& state = window_.workspace().state;
    recent_->clear();
    for (const std::filesystem::path& file : state.recentDataFiles()) {
        add(*recent_, qtText(file.filename().string()).replace('&', "&&"), {}, [&state, file] {
            state.handleIncomingImport(file);
        })->setToolTip(fromPath(file));
    }
    recent_->setToolTipsVisible(true);
    recent_->setEnabled(!recent_->isEmpty());
}

void MainMenus::listRecentProjects() {
    Workspace& workspace = window_.workspace();
    recentProjects_->clear();
    for (const std::filesystem::path& file : workspace.state.recentProjects()) {
        add(*recentProjects_, fromPath(file.filename()).replace('&', "&&"), {},
            [this, &workspace, file] { openProject(&window_, workspace, file); })
            ->setToolTip(fromPath(file));
    }
    recentProjects_->setToolTipsVisible(true);
    recentProjects_->setEnabled(!recentProjects_->isEmpty());
}

void MainMenus::refresh() {
    const StudioState& state = window_.workspace().state;
    // A running computation leaves nothing to do but wait for it or cancel it.
    for (QAction* menu : window_.menuBar()->actions()) {
        menu->setEnabled(!state.isComputing.get());
    }
    undoData_->setEnabled(state.canUndoDataChange());
    undoData_->setText(state.canUndoDataChange()
                           ? "Undo the " +
                                 qtText(state.data.dataChangeUndoLabel.get()).replace('&', "&&")
                           : QString("Undo Data Change"));
    const bool hasFindings = !state.reportItems->empty();
    for (QAction* action : withData_) {
        action->setEnabled(state.hasData());
    }
    for (QAction* action : withFindings_) {
        action->setEnabled(hasFindings);
    }
    for (QAction* action : withReport_) {
        action->setEnabled(hasFindings || state.reportRTFData.get().has_value());
    }
    inspector_->setEnabled(window_.hasInspector());
    inspector_->setChecked(window_.inspectorShows());
}

}  // namespace sorvane
