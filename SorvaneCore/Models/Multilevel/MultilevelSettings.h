#pragma once

#include <boost/describe/enum.hpp>

namespace sorvane {

enum class MultilevelEstimator { reml, ml };
BOOST_DESCRIBE_ENUM(MultilevelEstimator, reml, ml)

/// The reference distribution of the fixed effects: the normal, or t with these degrees of freedom.
enum class MultilevelDFMethod { wald, containment, satterthwaite, kenwardRoger };
BOOST_DESCRIBE_ENUM(MultilevelDFMethod, wald, containment, satterthwaite, kenwardRoger)

enum class MultilevelFamily { gaussian, binomial, poisson, ordinal };
BOOST_DESCRIBE_ENUM(MultilevelFamily, gaussian, binomial, poisson, ordinal)

/// How the clusters stand to each other and to time.
enum class MultilevelStructureKind { nested, crossed, threeLevel, growth, autoregressive };
BOOST_DESCRIBE_ENUM(MultilevelStructureKind, nested, crossed, threeLevel, growth, autoregressive)

}  // namespace sorvane
