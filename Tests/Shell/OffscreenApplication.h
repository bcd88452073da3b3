#pragma once

#include <QApplication>

#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

/// The toolkit's application, made once for all tests of a program.
inline QApplication& offscreenApplication() {
    static int count = 1;
    static char name[] = "ShellTest";
    static char* words[] = {name, nullptr};
    static QApplication application(count, words);
    static const bool isPrepared = [] {
        Theme::apply(application, Appearance::light);
        return true;
    }();
    static_cast<void>(isPrepared);
    return application;
}

}  // namespace sorvane
