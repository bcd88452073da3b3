#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QTextEdit>
#include <QTimer>

namespace sorvane {

class StudioState;

/// The assembled document, editable; what the user writes goes back into the state.
class ReportEditor final : public QTextEdit {
public:
    explicit ReportEditor(StudioState& state);
    ~ReportEditor() override;

    /// Shows the document of the state, unless it is the one that stands here.
    void refresh();
    /// Writes edits back now instead of in a moment.
    void commit();

private:
    StudioState& state_;
    std::optional<std::vector<std::uint8_t>> shown_;
    QTimer writeBack_;
    bool isLoading_ = false;
    bool isEdited_ = false;
};

}  // namespace sorvane
