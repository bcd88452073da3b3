#include "SorvaneMac/Screens/Structural/StructuralFields.h"

#include "SorvaneMac/Screens/Structural/StructuralModelText.h"
#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

StructuralModelSource JsonForm<StructuralModelSource>::from(const Json& json) {
    return {fromJson<std::string>(json)};
}

template <>
void Field<StructuralModelSource>::renameVariable(std::string_view from, std::string_view to) {
    std::string renamed = StructuralModelText::withRenamed(value_.text, from, to);
    if (renamed != value_.text) {
        replace({std::move(renamed)});
    }
}

StructuralFields::StructuralFields(FieldRegistry& fields)
    : semModel(fields, "semModel"),
      semHasRun(fields, "semHasRun"),
      semResult(fields, "semResult") {}

}  // namespace sorvane
