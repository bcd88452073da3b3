#include "SorvaneMac/State/CleaningFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(OutlierMethod value) {
    switch (value) {
        case OutlierMethod::iqr:
            return "1.5 × IQR beyond the quartiles";
        case OutlierMethod::zScore:
            return "|z| above 3";
    }
    return "";
}

CleaningFields::CleaningFields(FieldRegistry& fields)
    : clVar(fields, "clVar"),
      clLower(fields, "clLower"),
      clUpper(fields, "clUpper"),
      clOutlierMethod(fields, "clOutlierMethod", OutlierMethod::iqr, ResetRule::kept),
      clMessage(fields, "clMessage"),
      clKeyColumns(fields, "clKeyColumns"),
      clGroup(fields, "clGroup"),
      clCompositionVar(fields, "clCompositionVar"),
      clBenchmarks(fields, "clBenchmarks") {}

}  // namespace sorvane
