#pragma once

#include <filesystem>
#include <string_view>

/// Files of cases that lie in clusters.
namespace sorvane::ClusteredFiles {

/// Writes the file that a name asks for: pupils in schools ("lmm_ri_1e4.csv", with slopes of x1 that
/// differ "lmm_rs_2e3.csv", five large schools "lmm_huge_1e5.csv"), answers of subjects to items
/// ("lmm_cross_5e3.csv") or cures in clinics ("glmm_2e3.csv").
///
/// Returns    whether the name is one of these
bool write(std::string_view name, const std::filesystem::path& target);

}  // namespace sorvane::ClusteredFiles
