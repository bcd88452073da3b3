#include "SorvaneMac/Screens/Nonparametric/CategoryFields.h"

#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::CategoryFields {

void addControls(SetupForm& form, const ImportedDataset& dataset, NonparametricFields& fields) {
    const VariableLists::List groupings = VariableLists::anovaGroupingVariables(dataset);
    form.controls.emplace_back(
        FormControls::variablePicker("Row category", fields.npRowCat, groupings));
    form.controls.emplace_back(
        FormControls::variablePicker("Column category", fields.npColCat, groupings));
}

const TextColumn& column(const ImportedDataset& dataset, const Field<VariableName>& field) {
    return dataset.rows.column(*dataset.columnIndex(field->name));
}

}  // namespace sorvane::CategoryFields
