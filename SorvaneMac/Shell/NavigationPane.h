#pragma once

#include <functional>

#include <QStandardItemModel>
#include <QWidget>

#include "SorvaneMac/State/StudioScreen.h"

class QLabel;
class QListView;

namespace sorvane {

/// The screens by section; above them the dataset, or that there is none.
class NavigationPane final : public QWidget {
public:
    explicit NavigationPane(std::function<void(StudioScreen)> choose);

    void showDataset(const QString& name, const QString& details);
    void select(StudioScreen screen);
    void takeFocus();
    /// Wide enough for every title.
    int suitableWidth() const;

private:
    void fill();

    std::function<void(StudioScreen)> choose_;
    QStandardItemModel model_;
    QListView* list_;
    QLabel* name_;
    QLabel* details_;
};

}  // namespace sorvane
