#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

using Numbers = std::vector<double>;
using Size = std::size_t;

/// The Gram matrix of a list that fits its dimensions.
Numbers checkedGramMatrix(const Numbers& matrix, Size rows, Size cols) {
    if (cols == 0 ? !matrix.empty() : matrix.size() / cols != rows || matrix.size() % cols != 0) {
        throw CallError("The argument \"matrix\" needs rows times cols numbers.");
    }
    return LinearAlgebra::gramMatrix(matrix, rows, cols);
}

std::vector<Procedure> linearAlgebraProcedures() {
    using namespace arguments;      // NOLINT(google-build-using-namespace)
    using namespace LinearAlgebra;  // NOLINT(google-build-using-namespace)
    const Value<Numbers> matrix{"matrix"};
    const Value<Size> n{"n"};
    const Value<Size> rows{"rows"};
    const Value<Size> cols{"cols"};
    return {
        procedure("LinearAlgebra.invert", &invert, matrix, n),
        procedure("LinearAlgebra.gramMatrix", &checkedGramMatrix, matrix, rows, cols),
        procedure("LinearAlgebra.qrDecompose", &qrDecompose, matrix, rows, cols),
        procedure("LinearAlgebra.solveUpperTriangular", &solveUpperTriangular, matrix, n,
                  Value<Numbers>{"b"}),
        procedure("LinearAlgebra.covarianceFactorFromR", &covarianceFactorFromR, matrix, n),
        procedure("LinearAlgebra.symmetricEigen", &symmetricEigen, matrix, n),
        procedure("LinearAlgebra.logAbsDeterminant", &logAbsDeterminant, matrix, n),
    };
}

std::vector<Procedure> distributionProcedures() {
    using namespace arguments;          // NOLINT(google-build-using-namespace)
    using namespace MathDistributions;  // NOLINT(google-build-using-namespace)
    const Value<double> q{"q"};
    const Value<int> k{"k"};
    const Value<double> df{"df"};
    return {
        procedure("MathDistributions.chiSquareRightTailPValue", &chiSquareRightTailPValue,
                  Value<double>{"x"}, df),
        procedure("MathDistributions.fRightTailPValue", &fRightTailPValue, Value<double>{"f"},
                  Value<double>{"df1"}, Value<double>{"df2"}),
        procedure("MathDistributions.studentTPValue", &studentTPValue, Value<double>{"t"}, df),
        procedure("MathDistributions.studentTCDF", &studentTCDF, Value<double>{"t"}, df),
        procedure("MathDistributions.studentTCritical", &studentTCritical,
                  Value<double>{"twoTailedAlpha"}, df),
        procedure("MathDistributions.standardRangeCDF", &standardRangeCDF, q, k),
        procedure("MathDistributions.studentizedRangeCDF", &studentizedRangeCDF, q, k, df),
        procedure("MathDistributions.studentizedRangeQuantile", &studentizedRangeQuantile,
                  Value<double>{"p"}, k, df),
    };
}

}  // namespace

std::vector<Procedure> numericsProcedures() {
    std::vector<Procedure> procedures = linearAlgebraProcedures();
    for (Procedure& each : distributionProcedures()) {
        procedures.push_back(std::move(each));
    }
    procedures.push_back(procedure("DerivedValueFormatter.text", &NumberText::derivedValue,
                                   arguments::Value<double>{"value"}));
    return procedures;
}

}  // namespace sorvane
