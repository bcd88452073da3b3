#pragma once

#include <QColor>
#include <QFont>

class QApplication;

namespace sorvane {

/// How light the window is; `system` follows the desktop.
enum class Appearance { system, light, dark };

struct ThemeColors {
    QColor ground;
    QColor sidebar;
    QColor card;
    QColor field;
    QColor border;
    QColor strongBorder;
    QColor scrollHandle;
    QColor text;
    QColor quietText;
    QColor accent;
    QColor accentPressed;
    QColor onAccent;
    QColor accentGround;
    QColor met;
    QColor metGround;
    QColor caution;
    QColor cautionGround;
    QColor violated;
    QColor violatedGround;
    QColor unavailable;
    QColor unavailableGround;
};

/// Colours, type and the one stylesheet of the window.
///
/// Held by the application itself: the palette says light or dark, the font says the scale.
namespace Theme {

/// Gives the application its font, palette and stylesheet.
///
/// Input      scale: 1 to 2, the size of text and controls
void apply(QApplication& application, Appearance appearance, double scale = 1.0);

/// The colours of the appearance that stands.
const ThemeColors& colors();
const ThemeColors& colors(Appearance lightOrDark);
bool isDark();

/// A length of the design, in the scale that stands.
int px(double length);

/// The interface font at a size of the design: 13 for text, 12 and 11 for what is less.
QFont font(double size, QFont::Weight weight = QFont::Normal);
QFont fixedWidthFont(double size);
/// The interface faces at a size in pixels, whatever the scale.
QFont faces(double pixels);

}  // namespace Theme

}  // namespace sorvane
