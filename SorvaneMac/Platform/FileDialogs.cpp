#include "SorvaneMac/Platform/FileDialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QStandardPaths>

#include "SorvaneCore/Import/SpreadsheetImporter.h"

namespace sorvane {

namespace {

constexpr auto projectFilter = "Project (*.svp *.sorvane);;All files (*)";

std::optional<std::filesystem::path> chosen(const QString& fileName) {
    if (fileName.isEmpty()) {
        return std::nullopt;
    }
    return toPath(fileName);
}

/// The home folder where there is no folder of documents: of a path that does not exist, the dialog
/// takes the last part as a file's name.
QString documentsDirectory() {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

QString patterns(const SpreadsheetImporter::Format& format) {
    QStringList all;
    for (const std::string_view extension : format.extensions) {
        all << "*." + QString::fromUtf8(extension.data(), static_cast<int>(extension.size()));
    }
    return all.join(' ');
}

std::optional<std::filesystem::path> openDataFile(QWidget* parent) {
    return chosen(QFileDialog::getOpenFileName(parent, "Import a data file", documentsDirectory(),
                                               FileDialogs::dataFilter()));
}

std::optional<std::filesystem::path> openProject(QWidget* parent) {
    return chosen(
        QFileDialog::getOpenFileName(parent, "Open Project", documentsDirectory(), projectFilter));
}

/// Puts a sentence below the panel's own controls, where the panel is the toolkit's.
void addMessage(QFileDialog& dialog, const QString& message) {
    auto* grid = qobject_cast<QGridLayout*>(dialog.layout());
    if (grid && !message.isEmpty()) {
        auto* label = new QLabel(message);
        label->setWordWrap(true);
        grid->addWidget(label, grid->rowCount(), 0, 1, grid->columnCount());
    }
}

std::optional<std::filesystem::path> save(QWidget* parent, const SaveRequest& request) {
    const QString folder = request.folder ? fromPath(*request.folder) : documentsDirectory();
    const QString suggested = QDir(folder).filePath(QString::fromStdString(request.suggestedName));
    QFileDialog dialog(parent, request.title, suggested, request.filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setLabelText(QFileDialog::Accept,
                        request.acceptLabel.isEmpty() ? request.title : request.acceptLabel);
    addMessage(dialog, request.message);
    // A name typed without an extension gets that of the suggestion.
    dialog.setDefaultSuffix(QFileInfo(suggested).suffix());
    // Unless another kind of file is chosen: "SVG drawing (*.svg)".
    QObject::connect(&dialog, &QFileDialog::filterSelected, [&dialog](const QString& filter) {
        dialog.setDefaultSuffix(filter.section("*.", 1, 1).section(')', 0, 0));
    });
    return chosen(dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString());
}

}  // namespace

QString FileDialogs::dataFilter() {
    QStringList every;
    QStringList kinds;
    for (const SpreadsheetImporter::Format& format : SpreadsheetImporter::formats()) {
        every << patterns(format);
        kinds << QString::fromStdString(std::string(format.name)) + " (" + patterns(format) + ")";
    }
    return "Data files (" + every.join(' ') + ");;" + kinds.join(";;") + ";;All files (*)";
}

FileDialogs FileDialogs::ofPlatform() {
    return {.openDataFile = &sorvane::openDataFile,
            .openProject = &sorvane::openProject,
            .save = &sorvane::save};
}

std::filesystem::path toPath(const QString& fileName) {
    return std::filesystem::path(fileName.toStdU16String());
}

QString fromPath(const std::filesystem::path& path) {
    return QString::fromStdU16String(path.u16string());
}

}  // namespace sorvane
