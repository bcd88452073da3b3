#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

class QWidget;

namespace sorvane {

/// Writes a file that the user asked for; tells the user when it cannot be written.
///
/// Returns    whether it was written
bool saveFile(QWidget* parent,
              const std::filesystem::path& file,
              const std::vector<std::uint8_t>& bytes);

}  // namespace sorvane
