#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QTextEdit>
#include <QTimer>

namespace sorvane {

class StudioState;

/// The assembled document, editable, on a page as wide as the printed one; what the user writes goes
/// back into the state.
///
/// Invisible marks keep its numbers in one piece; they are neither stored nor copied.
///
/// While it has the focus, the keys of bold, italic and underlined text are its own.
class ReportEditor final : public QTextEdit {
public:
    explicit ReportEditor(StudioState& state);
    ~ReportEditor() override;

    /// Shows the document of the state, unless it is the one that stands here.
    void refresh();
    /// The page with its margins.
    int paperWidth() const;
    /// Writes edits back now instead of in a moment.
    void commit();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    double textWidth() const;
    void passMark(const QKeyEvent& event);

    StudioState& state_;
    std::optional<std::vector<std::uint8_t>> shown_;
    QTimer writeBack_;
    bool isLoading_ = false;
    bool isEdited_ = false;
};

}  // namespace sorvane
