#include <algorithm>
#include <array>
#include <iterator>

#include "SorvaneCore/Analyses/Factorial/ANCOVATests.h"
#include "SorvaneCore/Analyses/Factorial/FactorialANOVATests.h"
#include "SorvaneCore/Analyses/Factorial/RepeatedMeasuresANOVA.h"
#include "SorvaneCore/Analyses/Multivariate/CanonicalCorrelation.h"
#include "SorvaneCore/Analyses/Multivariate/DiscriminantAnalysis.h"
#include "SorvaneCore/Analyses/MultivariateANOVA.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

std::vector<const TextColumn*> pointers(const std::vector<CodedColumn>& columns) {
    std::vector<const TextColumn*> result;
    for (const CodedColumn& column : columns) {
        result.push_back(column.get());
    }
    return result;
}

std::vector<Procedure> factorialProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Column outcome{"outcome"};
    return {
        procedure(
            "FactorialANOVATests.nWay",
            [](const NumericColumn& y, const std::vector<CodedColumn>& factors,
               const NameList& names) {
                return FactorialANOVATests::nWay(y, pointers(factors), names);
            },
            outcome, CategoryColumns{"factors", "factorNames"}, Names{"factorNames", "factors"}),
        procedure(
            "FactorialANOVATests.twoWay",
            [](const NumericColumn& y, const CodedColumn& a, const CodedColumn& b,
               const std::string& aName, const std::string& bName) {
                return FactorialANOVATests::twoWay(
                    y, {.factorA = *a, .factorB = *b, .factorAName = aName, .factorBName = bName});
            },
            outcome, Categories{"factorA"}, Categories{"factorB"},
            ColumnName{"factorAName", "factorA"}, ColumnName{"factorBName", "factorB"}),
    };
}

std::vector<Procedure> groupModelProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Categories groups{"groups"};
    const ColumnName groupFactorName{"groupFactorName", "groups"};
    return {
        procedure(
            "ANCOVATests.test",
            [](const NumericColumn& outcome, const CodedColumn& by, const ColumnList& covariates,
               const NameList& names, const std::string& factor) {
                return ANCOVATests::test(outcome, *by, covariates,
                                         {.covariateNames = names, .groupFactorName = factor});
            },
            Column{"outcome"}, groups, Columns{"covariates", "covariateNames"},
            Names{"covariateNames", "covariates"}, groupFactorName),
        procedure(
            "RepeatedMeasuresANOVA.test",
            [](const ColumnList& conditions, const NameList& names) {
                return RepeatedMeasuresANOVA::test(conditions, names);
            },
            Columns{"conditionColumns", "conditionNames"},
            Names{"conditionNames", "conditionColumns"}),
        procedure(
            "MultivariateANOVA.test",
            [](const ColumnList& outcomes, const NameList& names, const CodedColumn& by,
               const std::string& factor) {
                return MultivariateANOVA::test(
                    outcomes, *by, {.dependentNames = names, .groupFactorName = factor});
            },
            Columns{"dependentColumns", "dependentNames"},
            Names{"dependentNames", "dependentColumns"}, groups, groupFactorName),
    };
}

std::vector<Procedure> variateProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return {
        procedure(
            "DiscriminantAnalysis.fit",
            [](const ColumnList& predictors, const NameList& names, const CodedColumn& by,
               const std::string& factor, DiscriminantPriors priors) {
                return DiscriminantAnalysis::fit(
                    predictors, *by,
                    {.predictorNames = names, .groupFactorName = factor, .priors = priors});
            },
            Columns{"predictors", "predictorNames"}, Names{"predictorNames", "predictors"},
            Categories{"groups"}, ColumnName{"groupFactorName", "groups"},
            Setting<DiscriminantPriors>{"priors", DiscriminantOptions{}.priors}),
        procedure(
            "CanonicalCorrelation.fit",
            [](const ColumnList& x, const ColumnList& y, const NameList& xNames,
               const NameList& yNames) {
                return CanonicalCorrelation::fit(x, y, {.setXNames = xNames, .setYNames = yNames});
            },
            Columns{"setX", "setXNames"}, Columns{"setY", "setYNames"}, Names{"setXNames", "setX"},
            Names{"setYNames", "setY"}),
    };
}

}  // namespace

std::vector<Procedure> varianceProcedures() {
    std::vector<Procedure> procedures = factorialProcedures();
    for (std::vector<Procedure>& more : std::array{groupModelProcedures(), variateProcedures()}) {
        std::ranges::move(more, std::back_inserter(procedures));
    }
    return procedures;
}

}  // namespace sorvane
