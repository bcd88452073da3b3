#include "SorvaneMac/Shell/Theme.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <QStyleFactory>

#include "SorvaneMac/Platform/SystemAppearance.h"
#include "SorvaneMac/Shell/StyleSheet.h"

/// The macro of the resource system declares a function, which must stand outside of namespaces.
static void provideIcons() {
    Q_INIT_RESOURCE(icons);
}

namespace sorvane::Theme {

namespace {

constexpr double textSize = 13.0;

ThemeColors lightColors() {
    return {.ground = "#f4f5f7",
            .sidebar = "#ebedf1",
            .card = "#ffffff",
            .field = "#ffffff",
            .border = "#dde0e6",
            .strongBorder = "#8c95a3",
            .scrollHandle = "#c5cad3",
            .text = "#1b2028",
            .quietText = "#5a6370",
            .accent = "#27598f",
            .accentPressed = "#1d4570",
            .onAccent = "#ffffff",
            .accentGround = "#dfeaf6",
            .met = "#1c6b37",
            .metGround = "#e0f2e5",
            .caution = "#7d4f00",
            .cautionGround = "#fcf0d6",
            .violated = "#a02a26",
            .violatedGround = "#fae4e2",
            .unavailable = "#5a6370",
            .unavailableGround = "#e9ebef"};
}

ThemeColors darkColors() {
    return {.ground = "#1b1e23",
            .sidebar = "#15171b",
            .card = "#23272d",
            .field = "#1b1e23",
            .border = "#363c45",
            .strongBorder = "#768090",
            .scrollHandle = "#454c57",
            .text = "#e8eaee",
            .quietText = "#a3acb8",
            .accent = "#80b4ea",
            .accentPressed = "#a3caf2",
            .onAccent = "#0f2032",
            .accentGround = "#213c59",
            .met = "#86d39d",
            .metGround = "#183a25",
            .caution = "#f1be62",
            .cautionGround = "#3b2e12",
            .violated = "#f39a92",
            .violatedGround = "#482221",
            .unavailable = "#a3acb8",
            .unavailableGround = "#31363e"};
}

QPalette paletteOf(const ThemeColors& colors) {
    QPalette palette;
    palette.setColor(QPalette::Window, colors.ground);
    palette.setColor(QPalette::WindowText, colors.text);
    palette.setColor(QPalette::Base, colors.card);
    palette.setColor(QPalette::AlternateBase, colors.ground);
    palette.setColor(QPalette::Text, colors.text);
    palette.setColor(QPalette::Button, colors.card);
    palette.setColor(QPalette::ButtonText, colors.text);
    palette.setColor(QPalette::ToolTipBase, colors.card);
    palette.setColor(QPalette::ToolTipText, colors.text);
    palette.setColor(QPalette::PlaceholderText, colors.quietText);
    palette.setColor(QPalette::Highlight, colors.accent);
    palette.setColor(QPalette::HighlightedText, colors.onAccent);
    palette.setColor(QPalette::Link, colors.accent);
    palette.setColor(QPalette::Mid, colors.border);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, colors.strongBorder);
    }
    return palette;
}

/// Faces made for interfaces first; the last one comes with nearly every desktop.
QStringList interfaceFamilies() {
    const QStringList wanted = {
        "Inter",  ".AppleSystemUIFont", "SF Pro Text",    "Segoe UI",        "Cantarell",  "Ubuntu",
        "Roboto", "Open Sans",          "Helvetica Neue", "Liberation Sans", "DejaVu Sans"};
    const QStringList present = QFontDatabase::families();
    QStringList found;
    std::copy_if(wanted.begin(), wanted.end(), std::back_inserter(found),
                 [&present](const QString& family) { return present.contains(family); });
    return found.isEmpty() ? wanted : found;
}

}  // namespace

const ThemeColors& colors(Appearance lightOrDark) {
    static const ThemeColors light = lightColors();
    static const ThemeColors dark = darkColors();
    return lightOrDark == Appearance::dark ? dark : light;
}

bool isDark() {
    return QGuiApplication::palette().color(QPalette::Window) == colors(Appearance::dark).ground;
}

const ThemeColors& colors() {
    return colors(isDark() ? Appearance::dark : Appearance::light);
}

void apply(QApplication& application, Appearance appearance, double scale) {
    provideIcons();
    const bool dark =
        appearance == Appearance::dark || (appearance == Appearance::system && systemPrefersDark());
    const ThemeColors& chosen = colors(dark ? Appearance::dark : Appearance::light);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setFont(faces(textSize * std::clamp(scale, 1.0, 2.0)));
    QApplication::setPalette(paletteOf(chosen));
    application.setStyleSheet(styleSheet(chosen, dark ? "dark" : "light"));
}

QFont faces(double pixels) {
    QFont font;
    font.setFamilies(interfaceFamilies());
    font.setPixelSize(static_cast<int>(std::lround(pixels)));
    return font;
}

int px(double length) {
    return static_cast<int>(std::lround(length * QApplication::font().pixelSize() / textSize));
}

QFont font(double size, QFont::Weight weight) {
    QFont font = QApplication::font();
    font.setPixelSize(px(size));
    font.setWeight(weight);
    return font;
}

QFont fixedWidthFont(double size) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(px(size));
    return font;
}

}  // namespace sorvane::Theme
