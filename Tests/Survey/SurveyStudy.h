#pragma once

#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Survey/SurveyDesign.h"

namespace sorvane::test {

/// One person of a sample.
struct Respondent {
    double weight = 1.0;
    std::string stratum{};
    std::string unit{};
    std::optional<double> x{};
    std::optional<double> y{};
    std::optional<double> yes{};
    std::optional<double> level{};
    std::string answer{};
    std::string group{};
};

using SurveyStudy = std::vector<Respondent>;

/// Forty persons in ten units of two strata, with answers that hang together.
inline SurveyStudy surveyStudy() {
    std::mt19937_64 random(5);
    SurveyStudy study;
    for (int i = 0; i < 40; ++i) {
        const double x = static_cast<double>(random() % 50) / 10.0;
        const double y = x + static_cast<double>(random() % 40) / 10.0;
        study.push_back({.weight = 1.0 + static_cast<double>(random() % 30) / 10.0,
                         .stratum = i < 16 ? "north" : "south",
                         .unit = "u" + std::to_string(i / 4),
                         .x = x,
                         .y = y,
                         .yes = y > 4.5 ? 1.0 : 0.0,
                         .level = y < 3.0   ? 1.0
                                  : y < 5.5 ? 2.0
                                            : 3.0,
                         .answer = y > 4.5 ? "yes" : "no",
                         .group = "g" + std::to_string(random() % 3)});
    }
    return study;
}

inline NumericColumn numbersOf(const SurveyStudy& study,
                               std::optional<double> Respondent::*member) {
    std::vector<std::optional<double>> numbers;
    for (const Respondent& each : study) {
        numbers.push_back(each.*member);
    }
    return NumericColumn(numbers);
}

inline std::shared_ptr<const TextColumn> textsOf(const SurveyStudy& study,
                                                 std::string Respondent::*member) {
    std::vector<std::string> texts;
    for (const Respondent& each : study) {
        texts.push_back(each.*member);
    }
    return TextColumn::of(texts);
}

inline SurveyDesign designOf(const SurveyStudy& study) {
    SurveyDesign design{.strata = textsOf(study, &Respondent::stratum),
                        .clusters = textsOf(study, &Respondent::unit)};
    for (const Respondent& each : study) {
        design.weights.push_back(each.weight);
    }
    return design;
}

}  // namespace sorvane::test
