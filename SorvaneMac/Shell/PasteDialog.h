#pragma once

#include <QDialog>

class QPlainTextEdit;

namespace sorvane {

/// Takes a table as text, from the clipboard where one is there.
class PasteDialog final : public QDialog {
public:
    explicit PasteDialog(QWidget* parent);

    QString text() const;

private:
    QPlainTextEdit* edit_;
};

}  // namespace sorvane
