#pragma once

#include <boost/describe/enum.hpp>
#include <optional>
#include <string_view>

#include "SorvaneCore/Analyses/Multivariate/CanonicalCorrelation.h"
#include "SorvaneCore/Analyses/Multivariate/DiscriminantAnalysis.h"
#include "SorvaneCore/Analyses/MultivariateANOVA.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class MVTest { manova, discriminant, canonical };
BOOST_DESCRIBE_ENUM(MVTest, manova, discriminant, canonical)

/// The test's name as the user reads it.
std::string_view displayName(MVTest test);

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
    Field<DiscriminantPriors> mvPriors;
    /// As they were last run.
    Field<std::optional<MANOVAResult>> mvManovaStored;
    Field<std::optional<DiscriminantResult>> mvDiscriminantStored;
    Field<std::optional<CanonicalCorrelationResult>> mvCanonicalStored;
};

}  // namespace sorvane
