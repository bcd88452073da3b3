#pragma once

#include <array>
#include <string_view>

/// What a project keeps of Survey Design: its settings, each with the field that it holds. The
/// screen has the fields; here they are known by name.
namespace sorvane::SurveySettings {

struct Setting {
    const char* key = "";
    std::string_view field;
};

/// As plain text, in every project.
inline constexpr std::array<Setting, 4> plain = {{{"sv_weight", "svWeight"},
                                                  {"sv_strata", "svStrata"},
                                                  {"sv_cluster", "svCluster"},
                                                  {"sv_estimand", "svEstimand"}}};

/// The rest of the design, and what is analysed under it: as JSON text, and only where the field is
/// not at its start.
inline constexpr std::array<Setting, 11> further = {{{"sv_fpc", "svFpc"},
                                                     {"sv_replicates", "svReplicates"},
                                                     {"sv_replicate_type", "svReplicateType"},
                                                     {"sv_fay_rho", "svFayRho"},
                                                     {"sv_replicate_scale", "svReplicateScale"},
                                                     {"sv_analysis", "svAnalysis"},
                                                     {"sv_outcome", "svOutcome"},
                                                     {"sv_predictors", "svPredictors"},
                                                     {"sv_corr_vars", "svCorrVars"},
                                                     {"sv_row_cat", "svRowCat"},
                                                     {"sv_col_cat", "svColCat"}}};

/// The field that says whether weights are in use, which projects keep as a flag.
inline constexpr std::string_view weightsActiveField = "surveyWeightsActive";

}  // namespace sorvane::SurveySettings
