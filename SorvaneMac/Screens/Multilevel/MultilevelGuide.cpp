#include "SorvaneMac/Screens/Multilevel/MultilevelGuide.h"

namespace sorvane::MultilevelGuide {

Guide guide() {
    return {.answers =
                "How an outcome depends on predictors when cases share a cluster (pupils in a "
                "school, measurements of a person), and how much of its variance lies between "
                "clusters.",
            .needs =
                "A numeric outcome and the variable that says which cluster a case belongs to. "
                "Ten clusters or more, better thirty: with fewer, the variance between clusters "
                "is hardly known. Growth and AR lag need a time variable and repeated rows per "
                "person.",
            .doNotClaim = {
                "Do not read one coefficient as both an effect within clusters and one between "
                "them; center the predictor within clusters to tell them apart.",
                "Do not compare models with different predictors by their REML criterion; fit "
                "both by ML.",
                "Do not claim that clusters do not matter because their variance is small or its "
                "test is not significant.",
                "Do not read coefficients as causal; they are associations in a clustered "
                "design."}};
}

}  // namespace sorvane::MultilevelGuide
