#pragma once

#include <stdexcept>

#include "SorvaneCore/Project/RecordJson.h"

namespace sorvane {

/// A step that the workspace refuses; the text is its message.
class StepRefused : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The argument of a step.
///
/// Failure    JSON of another form -> StepRefused
template <typename T>
T argumentOf(const Json& json) {
    try {
        return fromJson<T>(json);
    } catch (const RecordJsonError& error) {
        throw StepRefused(std::string("The step's argument ") + error.what() + ".");
    }
}

}  // namespace sorvane
