#pragma once

#include <boost/describe/enum.hpp>
#include <string_view>

#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The forms of Prepare Data, of which one is shown at a time.
enum class PrepareSection { recode, compute, totalScore, bands, scaleScore, imputation, rename };
BOOST_DESCRIBE_ENUM(
    PrepareSection, recode, compute, totalScore, bands, scaleScore, imputation, rename)
/// As the user reads it.
std::string_view displayName(PrepareSection value);

/// What of Prepare Data is open.
struct PrepareDataFields {
    explicit PrepareDataFields(FieldRegistry& fields);

    Field<PrepareSection> prepareSection;
};

}  // namespace sorvane
