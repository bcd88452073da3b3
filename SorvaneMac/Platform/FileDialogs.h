#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include <QString>

class QWidget;

namespace sorvane {

/// What a save panel asks for.
struct SaveRequest {
    QString title;
    std::string suggestedName;
    /// As the panel lists it, such as "PDF (*.pdf)".
    QString filter;
    /// What is saved, where that needs saying.
    QString message{};
    /// The button that saves; the title where empty.
    QString acceptLabel{};
    /// Where the panel opens; with the documents where absent.
    std::optional<std::filesystem::path> folder{};
};

/// The panels in which the user picks files; absent when the user cancels.
///
/// Held as functions, so that a window without a user (a test) can answer them itself.
struct FileDialogs {
    std::function<std::optional<std::filesystem::path>(QWidget*)> openDataFile;
    std::function<std::optional<std::filesystem::path>(QWidget*)> openProject;
    std::function<std::optional<std::filesystem::path>(QWidget*, const SaveRequest&)> save;

    static FileDialogs ofPlatform();
    /// What can be imported, as an open panel lists it: all of it first, then each kind.
    static QString dataFilter();
};

std::filesystem::path toPath(const QString& fileName);
QString fromPath(const std::filesystem::path& path);

}  // namespace sorvane
