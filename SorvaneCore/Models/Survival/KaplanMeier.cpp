#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Models/Survival/SurvivalAnalysis.h"
#include "SorvaneCore/Models/Survival/SurvivalRows.h"
#include "SorvaneCore/Models/Survival/SurvivalWording.h"

namespace sorvane::SurvivalAnalysis {

namespace {

constexpr std::size_t smallSampleBelow = 10;

/// The stratum of each level of the grouping.
struct Strata {
    static constexpr std::uint32_t blank = 0xFFFFFFFF;

    /// In the order of their bytes.
    std::vector<std::string> names{};
    std::vector<std::uint32_t> ofLevel{};
};

Strata strataOf(const TextColumn& group) {
    std::map<std::string_view, std::uint32_t> byName;
    for (std::size_t level = 0; level < group.levelCount(); ++level) {
        byName.emplace(UnicodeText::trimmed(group.level(level)), 0);
    }
    byName.erase("");
    Strata strata;
    for (auto& [name, index] : byName) {
        index = static_cast<std::uint32_t>(strata.names.size());
        strata.names.emplace_back(name);
    }
    for (std::size_t level = 0; level < group.levelCount(); ++level) {
        const auto found = byName.find(UnicodeText::trimmed(group.level(level)));
        strata.ofLevel.push_back(found == byName.end() ? Strata::blank : found->second);
    }
    return strata;
}

/// The stratum of each row of the table.
std::vector<std::uint32_t> stratumOfRow(const TextColumn& group, const Strata& strata) {
    std::vector<std::uint32_t> result(group.size());
    group.withCodes([&](const auto& codes) {
        for (std::size_t row = 0; row < result.size(); ++row) {
            result[row] = strata.ofLevel[codes[row]];
        }
    });
    return result;
}

/// The product over distinct times of rows that stand in ascending order of time.
KaplanMeierStratum kmCurve(std::string name,
                           const std::vector<double>& times,
                           const std::vector<std::uint8_t>& hasEvent) {
    // An exact half may have been missed by rounding.
    constexpr double halfSurvives = 0.5 + 1e-12;
    KaplanMeierStratum curve{.name = std::move(name), .n = static_cast<std::int64_t>(times.size())};
    double survival = 1.0;
    for (std::size_t first = 0, end = 0; first < times.size(); first = end) {
        std::int64_t events = 0;
        for (end = first; end < times.size() && times[end] == times[first]; ++end) {
            events += hasEvent[end];
        }
        if (events == 0) {
            continue;
        }
        const auto atRisk = static_cast<std::int64_t>(times.size() - first);
        survival *= 1.0 - static_cast<double>(events) / static_cast<double>(atRisk);
        curve.events += events;
        curve.points.push_back(
            {.time = times[first], .survival = survival, .nAtRisk = atRisk, .events = events});
        if (!curve.median && survival <= halfSurvives) {
            curve.median = times[first];
        }
    }
    return curve;
}

std::vector<KaplanMeierStratum> curves(const SurvivalRows& rows,
                                       const Strata& strata,
                                       const std::vector<std::uint32_t>& stratumOf) {
    struct Part {
        std::vector<double> times{};
        std::vector<std::uint8_t> hasEvent{};
    };
    std::vector<Part> parts(strata.names.size());
    for (std::size_t i = 0; i < rows.count(); ++i) {
        Part& part = parts[stratumOf[rows.rows[i]]];
        part.times.push_back(rows.times[i]);
        part.hasEvent.push_back(rows.hasEvent[i]);
    }
    std::vector<KaplanMeierStratum> result;
    for (std::size_t s = 0; s < parts.size(); ++s) {
        if (!parts[s].times.empty()) {
            result.push_back(kmCurve(strata.names[s], parts[s].times, parts[s].hasEvent));
        }
    }
    return result;
}

AnalysisReadiness readiness(const SurvivalRows& rows, std::size_t totalRows) {
    std::vector<AnalysisReadinessIssue> issues;
    if (rows.eventCount() == 0) {
        issues.push_back(AnalysisReadinessIssue::caution(SurvivalWording::noEvents()));
    }
    if (rows.count() < smallSampleBelow) {
        issues.push_back(AnalysisReadinessIssue::caution(SurvivalWording::smallSample()));
    }
    SurvivalWording::addTimeAndCensoringChecks(issues, rows);
    return AnalysisReadiness::of("Time \u2265 0 and a 0/1 event indicator",
                                 static_cast<std::int64_t>(totalRows),
                                 static_cast<std::int64_t>(rows.count()), std::move(issues));
}

}  // namespace

std::optional<KaplanMeierResult> kaplanMeier(const NumericColumn& time,
                                             const NumericColumn& event,
                                             const TextColumn* group) {
    if (event.size() != time.size() || (group && group->size() != time.size())) {
        return std::nullopt;
    }
    const std::array<const NumericColumn*, 2> columns = {&time, &event};
    std::vector<std::uint32_t> complete = CompleteCases::rows(columns);
    Strata strata{.names = {"Overall"}};
    std::vector<std::uint32_t> stratumOf(time.size(), 0);
    if (group) {
        strata = strataOf(*group);
        stratumOf = stratumOfRow(*group, strata);
        std::erase_if(complete, [&](std::uint32_t row) { return stratumOf[row] == Strata::blank; });
    }
    const SurvivalRows rows = SurvivalRows::of(time, event, complete);
    if (rows.count() == 0) {
        return std::nullopt;
    }
    return KaplanMeierResult{.strata = curves(rows, strata, stratumOf),
                             .readiness = readiness(rows, time.size())};
}

}  // namespace sorvane::SurvivalAnalysis
