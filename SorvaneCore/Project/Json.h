#pragma once

#include <nlohmann/json_fwd.hpp>

namespace sorvane {

/// A JSON value in memory; objects keep the order of their keys. Declared alone here, so that
/// headers which only pass it on stay light.
using Json = nlohmann::ordered_json;

}  // namespace sorvane
