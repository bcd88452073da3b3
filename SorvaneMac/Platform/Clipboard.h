#pragma once

#include <filesystem>
#include <optional>

#include <QString>

/// The clipboard of the desktop.
namespace sorvane::Clipboard {

void setText(const QString& text);
/// Puts both forms on the clipboard at once; the receiver takes the one that it can use.
void setRichText(const QString& html, const QString& plainText);
QString text();
/// A file that was copied in the desktop's file manager; absent without one.
std::optional<std::filesystem::path> file();

}  // namespace sorvane::Clipboard
