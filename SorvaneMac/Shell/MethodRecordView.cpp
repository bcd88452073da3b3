#include "SorvaneMac/Shell/MethodRecordView.h"

#include <QDateTime>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include "SorvaneMac/Screens/MethodPreview.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

bool saysTheSame(MethodFile record, const MethodFile& other) {
    record.id = other.id;
    record.timestamp = other.timestamp;
    return record == other;
}

QString timeText(std::chrono::sys_seconds moment) {
    const QDateTime local = QDateTime::fromSecsSinceEpoch(moment.time_since_epoch().count());
    return QLocale(QLocale::English).toString(local, "d MMMM yyyy, HH:mm:ss");
}

}  // namespace

MethodRecordView::MethodRecordView(Workspace& workspace)
    : workspace_(workspace),
      time_(Labels::text("")),
      savedAs_(Labels::text("", "small")),
      rows_(new QVBoxLayout) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Theme::px(4));
    column->addWidget(Labels::text("METHOD RECORD", "heading"));
    column->addWidget(time_);
    column->addWidget(savedAs_);
    column->addSpacing(Theme::px(8));
    rows_->setSpacing(Theme::px(2));
    column->addLayout(rows_);
    column->addSpacing(Theme::px(8));
    auto* buttonRow = new QHBoxLayout;
    buttonRow->addWidget(Buttons::make("Save method file…", [this] {
        if (record_) {
            saveMethodRecord(this, workspace_, *record_);
        }
    }));
    buttonRow->addStretch(1);
    column->addLayout(buttonRow);
    column->addSpacing(Theme::px(4));
    column->addWidget(Labels::text(qtText(MethodPreview::purpose), "small"));
}

void MethodRecordView::refresh() {
    const MethodFile now = workspace_.state.activeMethodFile();
    if (!record_ || !saysTheSame(*record_, now)) {
        record_ = now;
        show(now);
    }
}

void MethodRecordView::show(const MethodFile& record) {
    time_->setText(timeText(record.timestamp));
    Labels::show(*savedAs_, "Saved as " + qtText(record.defaultFilename()));
    while (QLayoutItem* item = rows_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const Fact& row : MethodPreview::rows(record)) {
        rows_->addWidget(Labels::text(qtText(row.label), "small"));
        rows_->addWidget(Labels::text(row.text.empty() ? "—" : qtText(row.text)));
        rows_->addSpacing(Theme::px(4));
    }
}

void saveMethodRecord(QWidget* parent, Workspace& workspace, const MethodFile& record) {
    const std::optional<std::filesystem::path> file =
        workspace.dialogs.save(parent, {.title = "Save Method File",
                                        .suggestedName = record.defaultFilename(),
                                        .filter = "Method file (*.svmethod)"});
    if (file) {
        workspace.state.saveMethodFile(*file, record);
    }
}

}  // namespace sorvane
