#pragma once

#include <QLabel>
#include <QString>

namespace sorvane {

/// Texts of the window, by the role that the stylesheet knows.
namespace Labels {

/// A line of text that wraps and takes whatever width it is given.
QLabel* text(const QString& text, const char* role = "");
/// As `text`, for a name without blanks: it breaks after an underscore. What is seen cannot be
/// marked, since marks of breaking stand in it.
void showName(QLabel& label, const QString& name);
/// A line that stays in one piece.
QLabel* line(const QString& text, const char* role = "");
/// A short word on a coloured ground: "met", "caution", "violated" or "unavailable".
QLabel* pill(const QString& text, const char* tone);

}  // namespace Labels

}  // namespace sorvane
