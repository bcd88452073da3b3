#pragma once

#include <optional>

#include <QWidget>

#include "SorvaneCore/Project/MethodFile.h"
#include "SorvaneMac/Shell/Workspace.h"

class QLabel;
class QVBoxLayout;

namespace sorvane {

/// The method record of the present screen, and the button that saves it.
class MethodRecordView final : public QWidget {
public:
    explicit MethodRecordView(Workspace& workspace);

    /// Takes a new record where the shown one no longer says what the screen does; so its
    /// identifier and time stay for as long as it is looked at unchanged.
    void refresh();
    /// The next display takes a new record.
    void leave() { record_.reset(); }

private:
    void show(const MethodFile& record);

    Workspace& workspace_;
    std::optional<MethodFile> record_;
    QLabel* time_;
    QLabel* savedAs_;
    QVBoxLayout* rows_;
};

/// Asks where, and writes the record there.
void saveMethodRecord(QWidget* parent, Workspace& workspace, const MethodFile& record);

}  // namespace sorvane
