#include "SorvaneMac/Platform/SystemAppearance.h"

#include <QApplication>
#include <QPalette>

namespace sorvane {

bool systemPrefersDark() {
    QApplication::setPalette(QPalette());
    const QPalette platform = QGuiApplication::palette();
    return platform.color(QPalette::Window).lightness() <
           platform.color(QPalette::WindowText).lightness();
}

}  // namespace sorvane
