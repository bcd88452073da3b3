#pragma once

#include <array>
#include <string_view>

/// The words that speak for or against a scale item; the first match of a list is the one reported.
namespace sorvane::ScaleItemClassifier {

inline constexpr std::array<std::string_view, 46> scaleKeywords = {
    "agree",      "disagree",      "strongly", "satisfied",   "satisfaction",  "confident",
    "confidence", "comfortable",   "believe",  "feel",        "perceive",      "perception",
    "likely",     "frequency",     "often",    "effective",   "effectiveness", "quality",
    "useful",     "clear",         "prepared", "motivated",   "engaged",       "supported",
    "belonging",  "trust",         "impact",   "improvement", "difficulty",    "stress",
    "anxiety",    "self-efficacy", "efficacy", "attitude",    "behavior",      "experience",
    "rate",       "rating",        "extent",   "important",   "helpful",       "fair",
    "respect",    "safe",          "valued",   "recommend"};

inline constexpr std::array<std::string_view, 60> informationalKeywords = {
    "age",        "gender",   "sex",      "race",        "ethnicity",   "ethnic",     "department",
    "dept",       "school",   "college",  "university",  "program",     "role",       "title",
    "job",        "position", "grade",    "grade level", "year",        "years",      "experience",
    "tenure",     "location", "city",     "state",       "country",     "zip",        "postal",
    "email",      "e-mail",   "name",     "first name",  "last name",   "respondent", "id",
    "identifier", "uuid",     "date",     "time",        "timestamp",   "created",    "modified",
    "consent",    "section",  "group",    "cohort",      "class",       "classroom",  "site",
    "district",   "building", "employee", "student",     "participant", "phone",      "address",
    "salary",     "income",   "count",    "number of"};

inline constexpr std::array<std::string_view, 16> idMetadataKeywords = {
    "id",         "identifier", "uuid",  "email",  "e-mail",    "name",
    "first name", "last name",  "date",  "time",   "timestamp", "created",
    "modified",   "respondent", "phone", "address"};

/// Fewer than the dataset's missing markers, on purpose: "nan" or "no response" is a value here.
inline constexpr std::array<std::string_view, 7> missingTokens = {"",  "na", "n/a",    "null",
                                                                  ".", "-",  "missing"};

inline constexpr std::array<std::string_view, 10> booleanValues = {"yes",   "no", "y", "n", "true",
                                                                   "false", "0",  "1", "t", "f"};

}  // namespace sorvane::ScaleItemClassifier
