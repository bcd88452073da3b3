#include "SorvaneMac/Screens/LaterScreen.h"

#include <map>

namespace sorvane {

namespace {

constexpr std::string_view notYet = "This screen is not in this version yet.";

struct Plan {
    std::string_view holds;
    std::string_view needs;
    std::string_view doNotClaim;
};

const std::map<StudioScreen, Plan>& plans() {
    using enum StudioScreen;
    static const std::map<StudioScreen, Plan> texts = {
        {dataPrep,
         {"Recoding, computing, binning and scale scores that add columns to the dataset, each "
          "logged and undoable.",
          "A dataset with the variables to be prepared.",
          "Do not report a derived variable without saying how it was made."}},
        {dataQuality,
         {"Missing values by column and by pattern, values out of range, outliers and duplicate "
          "rows.",
          "A dataset; a scale range for each item that is to be checked.",
          "Do not delete cases only because a rule flagged them."}},
        {sem,
         {"Confirmatory factor and structural models with fit measures and path diagrams.",
          "A model in syntax and enough complete cases for its parameters.",
          "Do not claim that a model which fits is the true one."}},
        {survey,
         {"Means, totals, proportions and ratios under weights, strata, clusters and replicate "
          "weights.",
          "A weight variable, and the design variables of the survey.",
          "Do not speak of the population without the design's weights."}},
        {multilevel,
         {"Mixed models for nested, crossed and repeated observations.",
          "An outcome, and a variable that says which cluster a case belongs to.",
          "Do not read an effect between clusters as one within them."}},
        {latentClass,
         {"Latent profiles and classes with a comparison of the number of classes.",
          "Several indicators and a sample large enough for the classes.",
          "Do not treat the most likely class as a fact about a person."}},
        {survival,
         {"Kaplan-Meier curves, log-rank tests and Cox regression.",
          "A time and whether the event was seen.",
          "Do not claim what happens beyond the last observed time."}},
        {mediation,
         {"Indirect effects with bootstrap intervals, and interactions with simple slopes.",
          "An outcome, a predictor, and a mediator or moderator.",
          "Do not claim a causal path from one cross-sectional survey."}},
        {invariance,
         {"Whether a scale works alike in the groups that are to be compared.",
          "Items of one factor and a grouping variable.",
          "Do not compare scale means between groups where invariance fails."}},
        {technicalAppendix,
         {"The methods, settings and versions behind every staged finding.",
          "At least one staged finding.", "Do not leave out the rule for missing data."}},
    };
    return texts;
}

}  // namespace

SetupForm LaterScreen::setup() {
    SetupForm form;
    form.title = std::string(title(id_));
    form.controls = {NoteControl{std::string(notYet), false}};
    return form;
}

ScreenContent LaterScreen::content() const {
    const Guide held = guide();
    ScreenContent content;
    content.title = std::string(title(id_));
    content.gate = {.title = std::string(notYet), .lead = held.answers, .text = held.needs};
    return content;
}

Guide LaterScreen::guide() const {
    const auto plan = plans().find(id_);
    if (plan == plans().end()) {
        return {};
    }
    return {.answers = "It will hold: " + std::string(plan->second.holds),
            .needs = "It will need: " + std::string(plan->second.needs),
            .doNotClaim = {std::string(plan->second.doNotClaim)}};
}

std::optional<std::string> LaterScreen::run() {
    return std::string(notYet);
}

}  // namespace sorvane
