#include "SorvaneMac/Screens/ScreenFields.h"

namespace sorvane {

ScreenFields::ScreenFields(FieldRegistry& fields)
    : compareMeans(fields),
      descriptives(fields),
      correlation(fields),
      regression(fields),
      dataReduction(fields),
      multivariate(fields),
      survey(fields),
      prepareData(fields),
      variableEditor(fields),
      cleaning(fields),
      imputation(fields),
      structural(fields),
      multilevel(fields),
      latentClass(fields),
      mediation(fields),
      invariance(fields),
      survival(fields),
      nonparametric(fields) {}

}  // namespace sorvane
