#pragma once

#include <QApplication>

namespace sorvane {

/// The toolkit's application, which the test program's main makes before any test.
inline QApplication& offscreenApplication() {
    return *static_cast<QApplication*>(QCoreApplication::instance());
}

}  // namespace sorvane
