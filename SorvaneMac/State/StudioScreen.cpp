#include "SorvaneMac/State/StudioScreen.h"

#include <array>
#include <boost/describe/enum_to_string.hpp>
#include <boost/describe/enumerators.hpp>
#include <boost/mp11/algorithm.hpp>
#include <cstddef>
#include <iterator>

namespace sorvane {

namespace {

struct ScreenTexts {
    StudioScreen screen;
    std::string_view title;
    StudioSection section;
    std::string_view methodName;
    std::string_view purpose;
};

using enum StudioScreen;
using enum StudioSection;

constexpr std::string_view projectReview = "project review";

/// One row per screen, in the order of the enumerators.
constexpr ScreenTexts screenTexts[] = {
    {overview, "Overview", project, projectReview,
     "Where does the study stand, and what comes next?"},
    {importData, "Import Data", project, projectReview,
     "How did the file come in, and what was repaired on the way?"},
    {dataPreview, "Data Preview", project, projectReview, "What stands in the cells?"},
    {dataPrep, "Prepare Data", project, projectReview,
     "Which new variables do I need, made from the ones I have?"},
    {instrumentMap, "Instrument Map", instrument, projectReview,
     "What does each column seem to be, and why?"},
    {variableTypes, "Variable Types", instrument, projectReview,
     "What is each variable in this study? Here you decide."},
    {dataQuality, "Data Quality", instrument, "data quality scan",
     "What is missing, out of range, unusual or twice there?"},
    {scalesReliability, "Scale & Reliability", instrument, "scale reliability",
     "Do these items measure one thing consistently?"},
    {descriptives, "Descriptives & Explore", evidence, "descriptive statistics",
     "What is typical, and how are values spread?"},
    {inferential, "Compare Means", evidence, "group comparison",
     "Do groups or occasions differ on average?"},
    {correlation, "Correlation", evidence, "correlation analysis",
     "Do two variables move together?"},
    {regression, "Regression", evidence, "regression analysis",
     "What goes with the outcome when the rest is held constant?"},
    {nonparametric, "Nonparametric & Categorical", evidence, "nonparametric analysis",
     "The same questions by ranks and counts."},
    {dataReduction, "Data Reduction", evidence, "data reduction",
     "Which variables belong together, which cases are alike?"},
    {multivariate, "Multivariate", evidence, "multivariate analysis",
     "Do groups differ on several outcomes at once?"},
    {sem, "SEM & CFA", evidence, "structural equation modeling",
     "Does a model of factors and paths fit the data?"},
    {survey, "Survey Design", evidence, "weighted estimation",
     "What holds for the population that the sample was drawn from?"},
    {multilevel, "Multilevel", advanced, "multilevel analysis",
     "How much is a matter of the group that a case belongs to?"},
    {latentClass, "Latent Class", advanced, "latent class analysis",
     "Are there kinds of people behind the answers?"},
    {survival, "Survival", advanced, "survival analysis",
     "How long does it take until something happens?"},
    {mediation, "Mediation & Moderation", advanced, projectReview,
     "By which way, or for whom, does an effect come about?"},
    {invariance, "Invariance", advanced, projectReview,
     "Does a scale mean the same in each group?"},
    {groupPatterns, "Group Patterns", evidence, "group comparison", "How much do groups overlap?"},
    {relationships, "Relationships", evidence, "correlation analysis",
     "May this association be described by a line?"},
    {categoricalTests, "Categorical Tests", evidence, "nonparametric analysis",
     "Do two sets of categories go together?"},
    {findings, "Findings", report, projectReview,
     "What will the report say? Here it is assembled and edited."},
    {technicalAppendix, "Technical Appendix", report, projectReview,
     "What does another researcher need to repeat it?"},
    {export_, "Share & export", report, projectReview,
     "In which form does the report leave the program?"},
    {userGuide, "User Guide", report, projectReview, "This page."},
};
constexpr bool standInOrder() {
    for (std::size_t at = 0; at < std::size(screenTexts); ++at) {
        if (static_cast<std::size_t>(screenTexts[at].screen) != at) {
            return false;
        }
    }
    return std::size(screenTexts) ==
           boost::mp11::mp_size<boost::describe::describe_enumerators<StudioScreen>>::value;
}
static_assert(standInOrder(), "a row for each screen, in the order of the enumerators");

constexpr std::array<std::string_view, 5> sectionNames = {"Project", "Instrument", "Evidence",
                                                          "Advanced", "Report"};

const ScreenTexts& texts(StudioScreen screen) {
    return screenTexts[static_cast<std::size_t>(screen)];
}

}  // namespace

std::string_view rawValue(StudioScreen screen) {
    return screen == StudioScreen::export_ ? "export" : boost::describe::enum_to_string(screen, "");
}

std::string_view title(StudioScreen screen) {
    return texts(screen).title;
}

bool isAdvanced(StudioScreen screen) {
    return section(screen) == StudioSection::advanced;
}

std::string_view methodName(StudioScreen screen) {
    return texts(screen).methodName;
}

std::string_view purpose(StudioScreen screen) {
    return texts(screen).purpose;
}

const std::vector<StudioScreen>& allStudioScreens() {
    static const std::vector<StudioScreen> screens = [] {
        std::vector<StudioScreen> all;
        boost::mp11::mp_for_each<boost::describe::describe_enumerators<StudioScreen>>(
            [&all](auto enumerator) { all.push_back(enumerator.value); });
        return all;
    }();
    return screens;
}

std::string_view displayName(StudioSection section) {
    return sectionNames[static_cast<std::size_t>(section)];
}

StudioSection section(StudioScreen screen) {
    return texts(screen).section;
}

}  // namespace sorvane
