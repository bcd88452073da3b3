#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"

class QWidget;

namespace sorvane {

/// The table's name with an extension; a slash in it would lead into a folder.
std::string suggestedFileName(const ImportedDataset& dataset, std::string_view extension);

/// Writes a file that the user asked for; tells the user when it cannot be written.
///
/// Returns    whether it was written
bool saveFile(QWidget* parent,
              const std::filesystem::path& file,
              const std::vector<std::uint8_t>& bytes);

}  // namespace sorvane
