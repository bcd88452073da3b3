#include "SorvaneCore/Prepare/Imputation/ImputationWording.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::ImputationWording {

std::string nothingMissing() {
    return "No values are missing, so imputation returns the observed data unchanged.";
}

std::string manyMissing() {
    return "More than 40% of cells are missing; imputed values carry substantial uncertainty and "
           "should be treated as exploratory.";
}

std::string withoutValues(const std::vector<std::string>& names) {
    std::string listed;
    for (const std::string& name : names) {
        listed += (listed.empty() ? "" : ", ") + name;
    }
    return "These variables have no observed values and cannot be imputed; they are left missing "
           "rather than filled: " +
           listed;
}

std::string fewRows(std::int64_t rows) {
    return "There are fewer than 30 rows (" + NumberText::integer(rows) +
           "); chained-equation models are unstable on small samples.";
}

std::string fewImputations(std::int64_t m) {
    return "Fewer than 5 imputations (" + NumberText::integer(m) +
           "); pooled standard errors may be imprecise.";
}

}  // namespace sorvane::ImputationWording
