#include "SorvaneMac/Shell/PasteDialog.h"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "SorvaneMac/Platform/Clipboard.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

PasteDialog::PasteDialog(QWidget* parent) : QDialog(parent), edit_(new QPlainTextEdit) {
    setWindowTitle("Paste data");
    resize(Theme::px(640), Theme::px(420));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Theme::px(18), Theme::px(16), Theme::px(18), Theme::px(16));
    column->setSpacing(Theme::px(10));
    column->addWidget(Labels::text("Paste data", "cardTitle"));
    column->addWidget(Labels::text(
        "A table with names in its first row, its cells separated by tabs, commas or semicolons.",
        "quiet"));
    edit_->setFont(Theme::fixedWidthFont(12));
    edit_->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit_->setTabChangesFocus(true);
    edit_->setAccessibleName("Table to import");
    edit_->setPlainText(Clipboard::text());
    column->addWidget(edit_, 1);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(Buttons::make("Cancel", [this] { reject(); }));
    QPushButton* import = Buttons::make(
        "Import", [this] { accept(); }, Buttons::Weight::primary);
    import->setDefault(true);
    row->addWidget(import);
    column->addLayout(row);
}

QString PasteDialog::text() const {
    return edit_->toPlainText();
}

}  // namespace sorvane
