#pragma once

#include <memory>

#include "SorvaneMac/State/UserDefaults.h"

namespace sorvane {

/// Keeps preferences where the desktop keeps those of its programs.
///
/// `file` names a settings file to use in its place; for tests.
std::unique_ptr<UserDefaults> settingsDefaults(const std::string& file = {});

}  // namespace sorvane
