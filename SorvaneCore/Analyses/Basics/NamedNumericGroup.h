#pragma once

#include <boost/describe/class.hpp>
#include <string>
#include <vector>

namespace sorvane {

/// The valid values of one group, in row order: the shape in which groups reach tests.
struct NamedNumericGroup {
    std::string name{};
    std::vector<double> values{};

    bool operator==(const NamedNumericGroup&) const = default;
};
BOOST_DESCRIBE_STRUCT(NamedNumericGroup, (), (name, values))

}  // namespace sorvane
