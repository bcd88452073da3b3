#pragma once

#include <string_view>

#include "SorvaneCore/Survey/SurveyModel.h"

namespace sorvane {

/// How one kind of regression under a design is spoken of.
struct SurveyModelWords {
    /// In a sentence, before "regression".
    std::string_view name;
    std::string_view title;
    /// What a coefficient changes; empty for the outcome itself.
    std::string_view changed;
    /// "OR" and what it stands for; empty for a linear model.
    std::string_view ratioSymbol;
    std::string_view ratioName;
    /// What the analysis answers and needs.
    std::string_view answers;
    std::string_view needs;

    static const SurveyModelWords& of(SurveyModelKind kind);
};

}  // namespace sorvane
