#pragma once

#include <boost/describe/class.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Models/Structural/StructuralEquationModel.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

template <typename T>
struct JsonForm;

/// A model in lavaan's syntax; a column that is renamed is renamed in it.
struct StructuralModelSource {
    std::string text;

    bool operator==(const StructuralModelSource&) const = default;
};

template <>
struct JsonForm<StructuralModelSource> {
    template <typename Sink>
    static void write(Sink& sink, const StructuralModelSource& value) {
        sink.text(value.text);
    }
    static StructuralModelSource from(const Json& json);
};

template <>
void Field<StructuralModelSource>::renameVariable(std::string_view from, std::string_view to);

/// A model as it was fitted.
struct StructuralRun {
    std::string text;
    std::optional<SEMResult> result;
    /// The covariances of the sample and of the fitted model, row-major in the order of the result's
    /// observed variables; empty where there are no estimates.
    std::vector<double> sample;
    std::vector<double> implied;

    bool operator==(const StructuralRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(StructuralRun, (), (text, result))

/// The model of SEM & CFA, and how it was last fitted.
struct StructuralFields {
    explicit StructuralFields(FieldRegistry& fields);

    Field<StructuralModelSource> semModel;
    Field<bool> semHasRun;
    Field<std::optional<StructuralRun>> semResult;
};

}  // namespace sorvane
