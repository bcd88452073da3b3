#pragma once

#include <QLabel>
#include <QString>

namespace sorvane {

/// Texts of the window, by the role that the stylesheet knows.
namespace Labels {

/// A line of text that wraps and takes whatever width it is given.
QLabel* text(const QString& text, const char* role = "");
/// Puts another text into such a line.
void show(QLabel& label, const QString& text);
/// What such a line says, without the marks of its layout.
QString shown(const QLabel& label);
/// A line that stays in one piece.
QLabel* line(const QString& text, const char* role = "");
/// A short word on a coloured ground: "met", "caution", "violated" or "unavailable".
QLabel* pill(const QString& text, const char* tone);

}  // namespace Labels

}  // namespace sorvane
