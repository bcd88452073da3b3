#pragma once

#include <boost/describe/enum.hpp>

#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class MVTest { manova, discriminant, canonical };
BOOST_DESCRIBE_ENUM(MVTest, manova, discriminant, canonical)

/// The selections of Multivariate.
struct MultivariateFields {
    explicit MultivariateFields(FieldRegistry& fields);

    Field<MVTest> mvTest;
    Field<NameSet> mvVars;
    Field<VariableName> mvGroup;
    /// The two sides of a canonical correlation.
    Field<NameSet> mvSetX;
    Field<NameSet> mvSetY;
    Field<bool> mvHasRun;
};

}  // namespace sorvane
