#pragma once

#include <nlohmann/json.hpp>

#include "SorvaneCore/Project/RecordJson.h"

namespace sorvane {

/// The JSON form of a record as a value in memory. Apart from RecordJson.h, as few of those who
/// write records need the JSON library.
template <typename T>
Json toJson(const T& value) {
    JsonValueSink sink;
    writeJson(sink, value);
    return sink.take();
}

}  // namespace sorvane
