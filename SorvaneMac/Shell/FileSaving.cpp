#include "SorvaneMac/Shell/FileSaving.h"

#include <algorithm>
#include <optional>
#include <string>

#include <QMessageBox>

#include "SorvaneCore/Project/WholeFile.h"
#include "SorvaneMac/Platform/FileDialogs.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

std::string suggestedFileName(const ImportedDataset& dataset, std::string_view extension) {
    std::string name = dataset.name;
    std::ranges::replace(name, '/', '-');
    return name + "." + std::string(extension);
}

bool saveFile(QWidget* parent,
              const std::filesystem::path& file,
              const std::vector<std::uint8_t>& bytes) {
    const std::optional<std::string> failure = replaceFile(file, bytes);
    if (failure) {
        QMessageBox::warning(parent, fromPath(file.filename()),
                             "Save failed: " + qtText(*failure) + ".");
    }
    return !failure;
}

}  // namespace sorvane
