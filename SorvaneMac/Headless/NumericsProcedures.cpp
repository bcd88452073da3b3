#include <algorithm>
#include <cstdint>
#include <iterator>

#include "SorvaneCore/Numerics/BFGSMinimizer.h"
#include "SorvaneCore/Numerics/IRLS.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/SplitMix64.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

using Numbers = std::vector<double>;
using Size = std::size_t;

/// A square matrix of more columns, with its text, would take gigabytes.
void expectSquare(Size n) {
    constexpr Size most = 4000;
    if (n > most) {
        throw CallError("A matrix of so many columns is too large; give at most " +
                        NumberText::integer(static_cast<std::int64_t>(most)) + ".");
    }
}

/// The Gram matrix of a list that fits its dimensions.
Numbers checkedGramMatrix(const Numbers& matrix, Size rows, Size cols) {
    if (cols == 0 ? !matrix.empty() : matrix.size() / cols != rows || matrix.size() % cols != 0) {
        throw CallError("The argument \"matrix\" needs rows times cols numbers.");
    }
    expectSquare(cols);
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

/// The first draws of a seed.
std::vector<std::uint64_t> draws(std::uint64_t seed, Size count) {
    std::vector<std::uint64_t> result(count);
    SplitMix64 random(seed);
    std::ranges::generate(result, [&random] { return random.next(); });
    return result;
}

Numbers unitDraws(std::uint64_t seed, Size count) {
    Numbers result(count);
    SplitMix64 random(seed);
    std::ranges::generate(result, [&random] { return random.nextUnitDouble(); });
    return result;
}

std::vector<Procedure> optimizerProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Value<std::uint64_t> seed{"seed"};
    const Setting<Size> count{"count", 1};
    const IRLS::Limits limits;
    return {
        procedure("SplitMix64.next", &draws, seed, count),
        procedure("SplitMix64.nextUnitDouble", &unitDraws, seed, count),
        procedure(
            "IRLS.fit",
            [](const Numbers& designMatrix, Size rows, Size cols, const Numbers& response,
               IRLS::Link link, int maxIterations, double tolerance) {
                return IRLS::fit({.designMatrix = designMatrix,
                                  .rows = rows,
                                  .cols = cols,
                                  .response = response},
                                 link, {.maxIterations = maxIterations, .tolerance = tolerance});
            },
            Value<Numbers>{"designMatrix"}, Value<Size>{"rows"}, Value<Size>{"cols"},
            Value<Numbers>{"response"}, Value<IRLS::Link>{"link"},
            Setting<int>{"maxIterations", limits.maxIterations},
            Setting<double>{"tolerance", limits.tolerance}),
        procedure(
            "BFGSMinimizer.identity",
            [](Size n) {
                expectSquare(n);
                return BFGSMinimizer::identity(n);
            },
            Value<Size>{"n"}),
    };
}

}  // namespace

std::vector<Procedure> numericsProcedures() {
    std::vector<Procedure> procedures = linearAlgebraProcedures();
    for (std::vector<Procedure> some : {distributionProcedures(), optimizerProcedures()}) {
        std::ranges::move(some, std::back_inserter(procedures));
    }
    procedures.push_back(procedure("DerivedValueFormatter.text", &NumberText::derivedValue,
                                   arguments::Value<double>{"value"}));
    return procedures;
}

}  // namespace sorvane
