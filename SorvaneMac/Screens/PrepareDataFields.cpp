#include "SorvaneMac/Screens/PrepareDataFields.h"

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

std::string_view displayName(PrepareSection value) {
    switch (value) {
        case PrepareSection::recode:
            return "Recode values";
        case PrepareSection::compute:
            return "Compute a variable";
        case PrepareSection::totalScore:
            return "Total or mean score";
        case PrepareSection::bands:
            return "Group into bands";
        case PrepareSection::scaleScore:
            return "Scale score";
        case PrepareSection::imputation:
            return "Impute missing values";
        case PrepareSection::rename:
            return "Rename or delete";
    }
    return "";
}

PrepareDataFields::PrepareDataFields(FieldRegistry& fields)
    : prepareSection(fields, "prepareSection", PrepareSection::recode, ResetRule::kept) {}

}  // namespace sorvane
