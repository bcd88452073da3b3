#pragma once

#include <functional>
#include <vector>

#include <QKeySequence>
#include <QList>

class QAction;
class QMenu;

namespace sorvane {

class MainWindow;

/// The menu bar of the window and its keys.
class MainMenus {
public:
    explicit MainMenus(MainWindow& window);

    /// Enables what can be done now.
    void refresh();

private:
    QAction* add(QMenu& menu,
                 const QString& label,
                 const QKeySequence& keys,
                 std::function<void()> action);
    void buildFile();
    void listRecentFiles();
    void listRecentProjects();
    void buildEdit();
    /// Asks first where cells typed since the change would be lost.
    void undoDataChange();
    void buildData();
    void buildAnalyze();
    void buildView();
    void buildAppearance(QMenu& view);
    void buildHelp();
    /// An editing command for whatever has the focus.
    void addEdit(QMenu& menu, const QString& label, const QKeySequence& keys, const char* slot);

    MainWindow& window_;
    std::vector<QAction*> withData_;
    std::vector<QAction*> withReport_;
    std::vector<QAction*> withFindings_;
    QList<QAction*> ofPage_;
    QMenu* recent_ = nullptr;
    QMenu* recentProjects_ = nullptr;
    QAction* inspector_ = nullptr;
    QAction* undoData_ = nullptr;
};

}  // namespace sorvane
