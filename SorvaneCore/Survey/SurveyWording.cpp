#include "SorvaneCore/Survey/SurveyWording.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::SurveyWording {

std::string otherLength(std::size_t values, std::int64_t rows) {
    return "The variable has " + NumberText::integer(static_cast<std::int64_t>(values)) +
           " rows, but the survey design has " + NumberText::integer(rows) +
           ". Set up the design for the table that holds the variable.";
}

std::string tooFewRows(std::int64_t validN) {
    return "Only " + NumberText::integer(validN) +
           " row(s) hold the value and a weight; at least 2 are needed. Choose a variable with "
           "more answers.";
}

std::string noWeight() {
    return "The denominator adds up to zero, so no ratio can be formed. Choose another "
           "denominator.";
}

std::string noUsableReplicate() {
    return "No replicate gives weight to the rows that hold the value, so no standard error can be "
           "estimated. Check the replicate weights.";
}

std::string beyondNumbers() {
    return "The values or weights are too large, or a replicate weight is missing, so the sums "
           "cannot be formed. Check the weights, or divide the variable by a power of ten.";
}

std::string notZeroOrOne(std::int64_t count) {
    return "A proportion needs a variable coded 0 and 1; " + NumberText::integer(count) +
           " row(s) hold another value. Recode the variable, or estimate its mean.";
}

std::string fewDegreesOfFreedom(std::int64_t df) {
    return "Design degrees of freedom is " + NumberText::integer(df) +
           "; confidence intervals rely on a small-df t reference and are wide.";
}

}  // namespace sorvane::SurveyWording
