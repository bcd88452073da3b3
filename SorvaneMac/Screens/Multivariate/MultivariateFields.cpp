#include "SorvaneMac/Screens/Multivariate/MultivariateFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(MVTest test) {
    switch (test) {
        case MVTest::manova:
            return "MANOVA";
        case MVTest::discriminant:
            return "Discriminant analysis";
        case MVTest::canonical:
            return "Canonical correlation";
    }
    return {};
}

MultivariateFields::MultivariateFields(FieldRegistry& fields)
    : mvTest(fields, "mvTest", MVTest::manova, ResetRule::kept),
      mvVars(fields, "mvVars"),
      mvGroup(fields, "mvGroup"),
      mvSetX(fields, "mvSetX"),
      mvSetY(fields, "mvSetY"),
      mvHasRun(fields, "mvHasRun"),
      mvPriors(fields, "mvPriors", DiscriminantPriors::proportional, ResetRule::kept),
      mvManovaStored(fields, "mvManovaStored"),
      mvDiscriminantStored(fields, "mvDiscriminantStored"),
      mvCanonicalStored(fields, "mvCanonicalStored") {}

}  // namespace sorvane
