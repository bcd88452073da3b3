#pragma once

#include <string>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/Screens/Survival/SurvivalFields.h"

/// What is drawn and counted from the cases of survival curves, beyond the curves themselves.
namespace sorvane::SurvivalCurves {

/// The cases of one curve.
struct FollowUp {
    std::string stratum;
    /// When each was seen last, ascending.
    std::vector<double> times;
    /// Those at which a case was censored, each once.
    std::vector<double> censored;
};

/// The cases that `SurvivalAnalysis::kaplanMeier` counts, a follow-up for each of its strata.
///
/// Input      `group` null for one curve
std::vector<FollowUp> followUps(const NumericColumn& time,
                                const NumericColumn& event,
                                const TextColumn* group,
                                const std::vector<KaplanMeierStratum>& strata);

/// A curve of steps for each stratum, from 1 at time 0 to the last time seen, with a stroke where
/// cases were censored.
///
/// Input      a run with a result, and the cases of its strata
Chart chart(const KaplanMeierRun& run, const std::vector<FollowUp>& cases);

/// How many cases are still followed at some round times, a row for each stratum.
ReportTable atRisk(const std::string& time, const std::vector<FollowUp>& cases);

}  // namespace sorvane::SurvivalCurves
