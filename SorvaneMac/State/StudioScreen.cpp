#include "SorvaneMac/State/StudioScreen.h"

#include <array>
#include <boost/describe/enum_to_string.hpp>
#include <boost/describe/enumerators.hpp>
#include <boost/mp11/algorithm.hpp>
#include <cstddef>

namespace sorvane {

namespace {

struct ScreenTexts {
    std::string_view title;
    StudioSection section;
};

using enum StudioSection;

constexpr std::array<ScreenTexts, 29> screenTexts = {{
    {"Overview", project},
    {"Import Data", project},
    {"Data Preview", project},
    {"Prepare Data", project},
    {"Instrument Map", instrument},
    {"Variable Types", instrument},
    {"Data Quality", instrument},
    {"Scale & Reliability", instrument},
    {"Descriptives & Explore", evidence},
    {"Compare Means", evidence},
    {"Correlation", evidence},
    {"Regression", evidence},
    {"Nonparametric & Categorical", evidence},
    {"Data Reduction", evidence},
    {"Multivariate", evidence},
    {"SEM & CFA", evidence},
    {"Survey Design", evidence},
    {"Multilevel", advanced},
    {"Latent Class", advanced},
    {"Survival", advanced},
    {"Mediation & Moderation", advanced},
    {"Invariance", advanced},
    {"Group Patterns", evidence},
    {"Relationships", evidence},
    {"Categorical Tests", evidence},
    {"Findings", report},
    {"Technical Appendix", report},
    {"Share & export", report},
    {"User Guide", report},
}};

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
    return screen >= StudioScreen::multilevel && screen <= StudioScreen::invariance;
}

std::string_view methodName(StudioScreen screen) {
    switch (screen) {
        case StudioScreen::dataQuality:
            return "data quality scan";
        case StudioScreen::scalesReliability:
            return "scale reliability";
        case StudioScreen::descriptives:
            return "descriptive statistics";
        case StudioScreen::inferential:
        case StudioScreen::groupPatterns:
            return "group comparison";
        case StudioScreen::correlation:
        case StudioScreen::relationships:
            return "correlation analysis";
        case StudioScreen::regression:
            return "regression analysis";
        case StudioScreen::nonparametric:
        case StudioScreen::categoricalTests:
            return "nonparametric analysis";
        case StudioScreen::dataReduction:
            return "data reduction";
        case StudioScreen::multivariate:
            return "multivariate analysis";
        case StudioScreen::sem:
            return "structural equation modeling";
        case StudioScreen::survey:
            return "weighted estimation";
        case StudioScreen::multilevel:
            return "multilevel analysis";
        case StudioScreen::latentClass:
            return "latent class analysis";
        case StudioScreen::survival:
            return "survival analysis";
        default:
            return "project review";
    }
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
