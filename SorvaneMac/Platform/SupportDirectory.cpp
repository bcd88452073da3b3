#include "SorvaneMac/Platform/SupportDirectory.h"

#include <QStandardPaths>

#include "SorvaneMac/Platform/FileDialogs.h"

namespace sorvane {

std::filesystem::path supportDirectory() {
    return toPath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)) /
           "SorvaneBrisel";
}

}  // namespace sorvane
