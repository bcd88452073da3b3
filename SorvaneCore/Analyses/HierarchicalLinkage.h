#pragma once

#include <boost/describe/enum.hpp>

namespace sorvane {

/// What counts as the distance between two clusters.
enum class HierarchicalLinkage { ward, complete, average, single };
BOOST_DESCRIBE_ENUM(HierarchicalLinkage, ward, complete, average, single)

}  // namespace sorvane
