#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "SorvaneCore/Dataset/ImportedDataset.h"

/// The roles that survey packages give their columns.
namespace sorvane::PackageRoles {

/// The role that a package's word for it means, by its stored text, its shown text or what survey
/// programs call it, in any letter case; absent for other words.
std::optional<VariableKind> kind(std::string_view role);

/// Assigns the roles that can be told; where one cannot, the classifier's verdict stands.
///
/// Input      `roles` column name to role
void assign(const std::map<std::string, std::string>& roles, ImportedDataset& dataset);

}  // namespace sorvane::PackageRoles
