#include "SorvaneCore/Models/Structural/MeasurementInvariance.h"
#include "SorvaneCore/Models/Structural/SEMFitMeasures.h"
#include "SorvaneCore/Models/Structural/StructuralEquationModel.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

/// A model's text as it is read, and what is built from it.
struct BuiltSEMModel {
    std::vector<SEMSyntaxTerm> terms{};
    std::vector<std::string> latentVariables{};
    std::vector<std::string> allVariables{};
    std::vector<std::string> observed{};
    std::vector<std::string> latent{};
    std::vector<SEMParameterSlot> parameters{};
    std::int64_t freeCount = 0;
};
BOOST_DESCRIBE_STRUCT(
    BuiltSEMModel,
    (),
    (terms, latentVariables, allVariables, observed, latent, parameters, freeCount))

namespace {

/// The text of a model, by either of two names.
struct ModelText {
    std::string read(const CallArguments& call) const {
        return call.required<std::string>(call.has("text") ? "text" : "model");
    }
    std::vector<ListedArgument> listed() const { return {{"model", "text"}}; }
};

/// A model that is read already, or its text.
struct ParsedModel {
    SEMParsedSpec read(const CallArguments& call) const {
        return call.has("parsed") ? call.required<SEMParsedSpec>("parsed")
                                  : SEMModelSpecParser::parse(ModelText().read(call));
    }
    std::vector<ListedArgument> listed() const {
        return {{"parsed", formOf<SEMParsedSpec>(), ""}, {"model", "text, in place of parsed", ""}};
    }
};

bool namesColumns(const CallArguments& call) {
    return call.has("columns") || call.has("variableNames");
}

/// All columns of the table where none are given.
struct ModelColumns {
    ColumnList read(const CallArguments& call) const {
        return namesColumns(call) ? call.numericColumns("columns", "variableNames")
                                  : call.tableColumns();
    }
    std::vector<ListedArgument> listed() const {
        return {{"columns", "list of columns of numbers", ""}};
    }
};

struct ModelColumnNames {
    NameList read(const CallArguments& call) const {
        return namesColumns(call) ? call.columnNames("variableNames", "columns")
                                  : call.tableColumnNames();
    }
    std::vector<ListedArgument> listed() const { return {{"variableNames", "list of names", ""}}; }
};

/// A square matrix, given as its rows.
struct SquareMatrix {
    std::string name;
    NumberRows read(const CallArguments& call) const {
        NumberRows rows = call.required<NumberRows>(name);
        for (const std::vector<double>& row : rows) {
            if (row.size() != rows.size()) {
                throw CallError("The argument \"" + name + "\" needs as many columns as rows.");
            }
        }
        return rows;
    }
    std::vector<ListedArgument> listed() const { return {{name, "list of rows of a matrix"}}; }
};

std::vector<double> flat(const NumberRows& rows) {
    std::vector<double> result;
    for (const std::vector<double>& row : rows) {
        result.insert(result.end(), row.begin(), row.end());
    }
    return result;
}

BuiltSEMModel readAndBuild(const SEMParsedSpec& parsed, const NameList& datasetVariables) {
    SEMModel model = SEMModel::build(parsed, datasetVariables);
    return {.terms = parsed.terms,
            .latentVariables = parsed.latentVariables,
            .allVariables = parsed.allVariables,
            .observed = std::move(model.observed),
            .latent = std::move(model.latent),
            .parameters = std::move(model.parameters),
            .freeCount = model.freeCount};
}

double srmr(const NumberRows& implied, const NumberRows& sample) {
    if (implied.size() != sample.size()) {
        throw CallError("The arguments \"implied\" and \"sample\" need matrices of one size.");
    }
    return SEMFitMeasures::computeSRMR(flat(implied), flat(sample), sample.size());
}

std::vector<Procedure> modelProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Value<NameList> datasetVariables{"datasetVariables"};
    return {
        procedure(
            "SEMModelSpecParser.parse",
            [](const std::string& text) { return SEMModelSpecParser::parse(text); }, ModelText{}),
        procedure(
            "SEMModel.build",
            [](const SEMParsedSpec& parsed, const NameList& names) {
                return SEMModel::build(parsed, names);
            },
            ParsedModel{}, datasetVariables),
        procedure("SEMModelSpecParser.parse + SEMModel.build", &readAndBuild, ParsedModel{},
                  datasetVariables),
    };
}

std::vector<Procedure> estimationProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const ModelColumns columns{};
    const ModelColumnNames names{};
    const Value<std::string> model{"model"};
    return {
        procedure(
            "StructuralEquationModel.fit",
            [](const std::string& text, const ColumnList& cells, const NameList& cellNames) {
                return StructuralEquationModel::fit(text, cells, cellNames);
            },
            model, columns, names),
        procedure(
            "StructuralEquationModel.impliedCovariance",
            [](const std::string& text, const SEMResult& result, const NameList& cellNames) {
                return StructuralEquationModel::impliedCovariance(text, result, cellNames);
            },
            model, Value<SEMResult>{"result"}, names),
        procedure(
            "StructuralEquationModel.sampleCovariance",
            [](const NameList& observed, const ColumnList& cells, const NameList& cellNames) {
                return StructuralEquationModel::sampleCovariance(observed, cells, cellNames);
            },
            Value<NameList>{"observed"}, columns, names),
        procedure(
            "StructuralEquationModel.logDeterminantSPD",
            [](const NumberRows& matrix) {
                return StructuralEquationModel::logDeterminantSPD(flat(matrix), matrix.size());
            },
            SquareMatrix{"matrix"}),
        procedure("StructuralEquationModel.computeSRMR", &srmr, SquareMatrix{"implied"},
                  SquareMatrix{"sample"}),
        procedure("StructuralEquationModel.noncentralChiSquareCDF",
                  &SEMFitMeasures::noncentralChiSquareCDF, Value<double>{"x"}, Value<double>{"df"},
                  Value<double>{"noncentrality"}),
        procedure("StructuralEquationModel.rmseaConfidenceInterval",
                  &SEMFitMeasures::rmseaConfidenceInterval, Value<double>{"chiSquare"},
                  Value<std::int64_t>{"degreesOfFreedom"}, Value<std::int64_t>{"n"}),
    };
}

Procedure invarianceProcedure() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return procedure(
        "MeasurementInvariance.test",
        [](const ColumnList& items, const NameList& names, const CodedColumn& groups,
           const std::string& factor) {
            return MeasurementInvariance::test(items, *groups,
                                               {.itemNames = names, .groupFactorName = factor});
        },
        Columns{"items", "itemNames"}, Names{"itemNames", "items"}, Categories{"groups"},
        ColumnName{"groupFactorName", "groups"});
}

}  // namespace

std::vector<Procedure> structuralProcedures() {
    std::vector<Procedure> procedures = modelProcedures();
    for (Procedure& each : estimationProcedures()) {
        procedures.push_back(std::move(each));
    }
    procedures.push_back(invarianceProcedure());
    return procedures;
}

}  // namespace sorvane
