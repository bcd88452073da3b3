#pragma once

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Headless/CallArguments.h"

namespace sorvane {

/// One argument of a procedure or an operation, as the listings show it.
struct ListedArgument {
    std::string name;
    /// What may be given: "column of numbers", "true or false", "one of mean, sum" and so on.
    std::string form;
    /// What stands where it is left out, empty for nothing; absent where it must be given.
    std::optional<std::string> fallback{};
};

/// The JSON that a type is read from, in words.
template <typename T>
std::string formOf() {
    using namespace record_json;  // NOLINT(google-build-using-namespace)
    if constexpr (IsOptional<T>::value) {
        return formOf<typename T::value_type>();
    } else if constexpr (std::is_same_v<T, bool>) {
        return "true or false";
    } else if constexpr (std::is_integral_v<T>) {
        return "whole number";
    } else if constexpr (std::is_floating_point_v<T>) {
        return "number";
    } else if constexpr (std::is_enum_v<T>) {
        std::string choices;
        boost::mp11::mp_for_each<boost::describe::describe_enumerators<T>>([&](auto enumerator) {
            choices += choices.empty() ? "one of " : ", ";
            choices += enumeratorText(enumerator.value);
        });
        return choices;
    } else if constexpr (IsText<T>) {
        return "text";
    } else if constexpr (IsRecord<T>) {
        std::string members;
        boost::mp11::mp_for_each<Members<T>>([&](auto member) {
            members += members.empty() ? "object of " : ", ";
            members += member.name;
        });
        return members;
    } else if constexpr (IsMap<T>) {
        return "object of names, each with a " + formOf<typename T::mapped_type>();
    } else if constexpr (IsList<T> || IsSet<T>) {
        return "list, each a " + formOf<typename T::value_type>();
    } else {
        return "text";
    }
}

/// A value as JSON text, empty for nothing.
template <typename T>
std::string fallbackText(const T& value) {
    std::ostringstream out;
    {
        JsonTextSink sink(out);
        writeJson(sink, value);
    }
    const std::string text = out.str();
    return text == "null" || text == "[]" || text == "{}" || text == "\"\"" ? std::string() : text;
}

/// How arguments are declared where a procedure is bound: each reads itself from a call.
namespace arguments {

/// A column of numbers.
struct Column {
    std::string name;
    NumericColumn read(const CallArguments& call) const { return call.numericColumn(name); }
    std::vector<ListedArgument> listed() const { return {{name, "column of numbers"}}; }
};

/// The one column of a procedure that takes no other: "column", or "values".
struct OnlyColumn {
    NumericColumn read(const CallArguments& call) const {
        return call.numericColumn(call.onlyColumnName());
    }
    std::vector<ListedArgument> listed() const { return {{"column", "column of numbers"}}; }
};

/// The same, as those numbers that are present.
struct OnlyPresentNumbers {
    std::vector<double> read(const CallArguments& call) const {
        return call.numericColumn(call.onlyColumnName()).present();
    }
    std::vector<ListedArgument> listed() const { return {{"column", "column of numbers"}}; }
};

/// The same, as texts.
struct OnlyTexts {
    std::vector<std::string> read(const CallArguments& call) const {
        return call.textColumn(call.onlyColumnName());
    }
    std::vector<ListedArgument> listed() const { return {{"column", "column of texts"}}; }
};

/// Columns of numbers, which a list of names may name too.
struct Columns {
    std::string name;
    std::string namesKey;
    ColumnList read(const CallArguments& call) const { return call.numericColumns(name, namesKey); }
    std::vector<ListedArgument> listed() const {
        return {{name, "list of columns of numbers, or of their names in " + namesKey}};
    }
};

/// Named groups of numbers.
struct Groups {
    std::string name = "groups";
    std::vector<NamedNumericGroup> read(const CallArguments& call) const {
        return call.namedGroups(name);
    }
    std::vector<ListedArgument> listed() const {
        return {{name, "list of groups with name and values, or object of column and by", ""},
                {"outcome", "column of numbers, in place of groups", ""},
                {"group", "column of texts, in place of groups", ""}};
    }
};

/// A column of texts.
struct Categories {
    std::string name;
    CodedColumn read(const CallArguments& call) const { return call.codedColumn(name); }
    std::vector<ListedArgument> listed() const { return {{name, "column of texts"}}; }
};

/// Columns of texts, which a list of names may name too.
struct CategoryColumns {
    std::string name;
    std::string namesKey;
    std::vector<CodedColumn> read(const CallArguments& call) const {
        return call.codedColumns(name, namesKey);
    }
    std::vector<ListedArgument> listed() const {
        return {{name, "list of columns of texts, or of their names in " + namesKey}};
    }
};

/// The name of such a column.
struct ColumnName {
    std::string name;
    std::string columnKey;
    std::string read(const CallArguments& call) const { return call.columnName(name, columnKey); }
    std::vector<ListedArgument> listed() const { return {{name, "text", ""}}; }
};

/// A matrix of one row per case, as columns: a list of rows, or of column names.
struct Matrix {
    std::string name;
    std::string namesKey;
    ColumnList read(const CallArguments& call) const { return call.matrixColumns(name, namesKey); }
    std::vector<ListedArgument> listed() const {
        return {{name, "list of rows, or of column names, also in " + namesKey}};
    }
};

/// The names of such columns.
struct Names {
    std::string name;
    std::string columnsKey;
    std::vector<std::string> read(const CallArguments& call) const {
        return call.columnNames(name, columnsKey);
    }
    std::vector<ListedArgument> listed() const { return {{name, "list of names", ""}}; }
};

/// The names of the columns of such a matrix.
struct MatrixNames {
    std::string name;
    std::string matrixKey;
    std::vector<std::string> read(const CallArguments& call) const {
        return call.matrixNames(name, matrixKey);
    }
    std::vector<ListedArgument> listed() const { return {{name, "list of names", ""}}; }
};

/// A value that must be given.
template <typename T>
struct Value {
    std::string name;
    T read(const CallArguments& call) const { return call.required<T>(name); }
    std::vector<ListedArgument> listed() const { return {{name, formOf<T>()}}; }
};

/// A value that may be left out.
template <typename T>
struct Setting {
    std::string name;
    T fallback{};
    T read(const CallArguments& call) const { return call.setting<T>(name, fallback); }
    std::vector<ListedArgument> listed() const {
        return {{name, formOf<T>(), fallbackText(fallback)}};
    }
};

/// The start of a sequence of random numbers.
struct Seed {
    std::string name;
    std::uint64_t fallback = 0;
    std::uint64_t read(const CallArguments& call) const { return call.seed(name, fallback); }
    std::vector<ListedArgument> listed() const {
        return {{name, "whole number, or text of hexadecimal digits after 0x",
                 NumberText::unsignedInteger(fallback)}};
    }
};

/// All settings of a procedure that takes them as one struct.
template <typename T>
struct Settings {
    T read(const CallArguments& call) const { return call.settings<T>(); }
    std::vector<ListedArgument> listed() const {
        std::vector<ListedArgument> result;
        const T start{};
        boost::mp11::mp_for_each<record_json::Members<T>>([&](auto member) {
            const auto& field = start.*member.pointer;
            result.push_back(
                {member.name, formOf<std::decay_t<decltype(field)>>(), fallbackText(field)});
        });
        return result;
    }
};

}  // namespace arguments

/// What the declared arguments list; a later one of a name takes the place of an earlier.
template <typename... Arguments>
std::vector<ListedArgument> listedOf(const Arguments&... declared) {
    std::vector<ListedArgument> result;
    [[maybe_unused]] const auto add = [&result](const std::vector<ListedArgument>& listed) {
        for (const ListedArgument& each : listed) {
            std::erase_if(
                result, [&each](const ListedArgument& former) { return former.name == each.name; });
            result.push_back(each);
        }
    };
    (add(declared.listed()), ...);
    return result;
}

}  // namespace sorvane
