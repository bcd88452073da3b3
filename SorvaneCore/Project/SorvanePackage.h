#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/SorvaneEngine.h"

namespace sorvane {

/// Whether a package holds the data or says where they lie.
enum class DatasetStorageMode { copy, pointer };
BOOST_DESCRIBE_ENUM(DatasetStorageMode, copy, pointer)

/// What a package says of itself.
struct SorvaneProjectManifest {
    std::string projectName{};
    std::chrono::sys_seconds createdAt{};
    std::string engineVersion{SorvaneEngine::version};
    DatasetStorageMode datasetMode = DatasetStorageMode::copy;

    bool operator==(const SorvaneProjectManifest&) const = default;
};
BOOST_DESCRIBE_STRUCT(SorvaneProjectManifest,
                      (),
                      (projectName, createdAt, engineVersion, datasetMode))

/// A project as a folder, for a layout to come; the application keeps projects as single files.
namespace SorvanePackageLayout {

inline constexpr std::string_view packageExtension = "sorvane";

/// The names of what a package holds, folders first.
const std::vector<std::string>& requiredEntries();

/// Makes the folder of a package, with its manifest and without contents.
///
/// Returns    why it failed, as the system says it; absent on success
std::optional<std::string> createFolderPackage(const std::filesystem::path& at,
                                               const SorvaneProjectManifest& manifest);

}  // namespace SorvanePackageLayout

}  // namespace sorvane
