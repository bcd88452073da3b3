#pragma once

#include <boost/describe/enum.hpp>

namespace sorvane {

/// Whether the classes differ in means of numbers or in shares of categories.
enum class LatentMixtureMode { profile, classAnalysis };
BOOST_DESCRIBE_ENUM(LatentMixtureMode, profile, classAnalysis)

}  // namespace sorvane
