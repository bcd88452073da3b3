#include "SorvaneMac/Shell/ReportEditor.h"

#include "SorvaneMac/Report/RichDocument.h"
#include "SorvaneMac/Report/RichTextConversion.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

namespace {

constexpr int writeBackMilliseconds = 400;
constexpr double pageMargin = 22.0;

}  // namespace

ReportEditor::ReportEditor(StudioState& state) : state_(state) {
    setAccessibleName("Report");
    setTabChangesFocus(true);
    setFrameShape(QFrame::NoFrame);
    // The page is paper in either appearance: what is seen is what is printed.
    const QString paper = Theme::isDark() ? "#e9ebee" : "#ffffff";
    setStyleSheet("QTextEdit { background: " + paper + "; color: #101318; border: 1px solid " +
                  Theme::colors().border.name() + "; border-radius: 2px; }" +
                  "QTextEdit:focus { border: 2px solid " + Theme::colors().accent.name() + "; }");
    document()->setDefaultFont(Theme::faces(16));
    document()->setDocumentMargin(pageMargin);
    writeBack_.setSingleShot(true);
    writeBack_.setInterval(writeBackMilliseconds);
    connect(&writeBack_, &QTimer::timeout, this, &ReportEditor::commit);
    connect(this, &QTextEdit::textChanged, this, [this] {
        if (!isLoading_) {
            isEdited_ = true;
            writeBack_.start();
        }
    });
}

ReportEditor::~ReportEditor() {
    disconnect();
}

void ReportEditor::refresh() {
    const std::optional<std::vector<std::uint8_t>>& stored = state_.reportRTFData.get();
    if (stored == shown_) {
        return;
    }
    shown_ = stored;
    isLoading_ = true;
    const std::optional<RichDocument> document = stored ? decode(*stored) : std::nullopt;
    RichTextConversion::write(document.value_or(RichDocument()), *this->document());
    moveCursor(QTextCursor::Start);
    isLoading_ = false;
    isEdited_ = false;
    writeBack_.stop();
    setReadOnly(!document);
}

void ReportEditor::commit() {
    if (!isEdited_) {
        return;
    }
    isEdited_ = false;
    writeBack_.stop();
    // A document that was cleared or assembled anew meanwhile is not written over.
    if (state_.reportRTFData.get() != shown_) {
        refresh();
        return;
    }
    shown_ = encode(RichTextConversion::read(*document()));
    state_.reportRTFData.replace(shown_);
}

}  // namespace sorvane
