#pragma once

#include <filesystem>
#include <string_view>

/// The files on which workloads run, by their names: "likert_1e6.csv", "reg_1e5.csv", "efa_1e4.csv",
/// "items_1e4.csv", "hclust_1e3.csv", "kmeans_1e4.csv", "surv_1e4.csv",
/// "wide_500.csv", "text_2e4.csv", "corr_1e3.csv", "mix_5e3.csv", "stat_1e5_byte.sav", "stat_1e5_none.sav",
/// "stat_1e5.dta", "xlsx_1e4.xlsx", "proj_1e4.csv", "mice_2e3.csv", "svy_1e4.csv", "lmm_ri_1e4.csv".
namespace sorvane::WorkloadData {

/// Where the file is: in the folder that PERF_DATA names if it is there, else in bench-data/, where
/// it is made at first need, the same bytes each time.
///
/// Failure    a name of no known form, a folder that cannot be written -> std::runtime_error
std::filesystem::path file(std::string_view name);

}  // namespace sorvane::WorkloadData
