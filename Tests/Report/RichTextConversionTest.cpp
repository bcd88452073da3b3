#include "SorvaneMac/Report/RichTextConversion.h"

#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

#include <gtest/gtest.h>

#include "SorvaneMac/Report/ReportExporter.h"
#include "Tests/Report/SampleReport.h"

namespace sorvane {
namespace {

RichDocument sample() {
    return ReportExporter::attributed(test::sampleReport(), "d", 3);
}

TEST(RichTextConversion, ComesBackFromTheEditorUnchanged) {
    QTextDocument editor;
    RichTextConversion::write(sample(), editor);
    EXPECT_EQ(RichTextConversion::read(editor), sample());
    RichTextConversion::write(sample(), editor);
    EXPECT_EQ(RichTextConversion::read(editor), sample());
    RichTextConversion::write({}, editor);
    EXPECT_EQ(RichTextConversion::read(editor), RichDocument{});
}

TEST(RichTextConversion, DropsTheLineThatTheEditorNeedsAboveATable) {
    const RichDocument document{
        {{.runs = {{"a", {}}}, .block = TextTableBlock{.table = 1}}, {.runs = {{"b", {}}}}}};
    QTextDocument editor;
    RichTextConversion::write(document, editor);
    EXPECT_EQ(RichTextConversion::read(editor), document);
}

TEST(RichTextConversion, KeepsWhatTheUserChanged) {
    QTextDocument editor;
    RichTextConversion::write(sample(), editor);

    QTextCursor title = editor.find("Results");
    QTextCharFormat changed;
    changed.setFontItalic(true);
    changed.setFontPointSize(24);
    title.mergeCharFormat(changed);

    QTextCursor cell = editor.find("31.24");
    cell.insertText("99");
    cell.insertBlock();
    cell.insertText("more");

    QTextCursor head = editor.find("Scale");
    head.removeSelectedText();
    head.insertText("Typed");

    RichDocument expected = sample();
    expected.paragraphs[0].runs[0].style = {.points = 24, .bold = true, .italic = true};
    for (std::size_t at = 0; at < expected.paragraphs.size(); ++at) {
        Paragraph& paragraph = expected.paragraphs[at];
        if (!paragraph.runs.empty() && paragraph.runs[0].text == "Scale") {
            paragraph.runs[0].text = "Typed";
        }
        if (!paragraph.runs.empty() && paragraph.runs[0].text == "31.24") {
            paragraph.runs[0].text = "99";
            Paragraph second = paragraph;
            second.runs[0].text = "more";
            expected.paragraphs.insert(expected.paragraphs.begin() + static_cast<long>(at) + 1,
                                       second);
            break;
        }
    }
    EXPECT_EQ(RichTextConversion::read(editor), expected);
    EXPECT_EQ(*decode(encode(expected)), expected);
}

TEST(RichTextConversion, TextTypedIntoAnEmptyCellTakesTheStyleOfTheTable) {
    const RichDocument document{{{.block = TextTableBlock{.table = 1, .bottomBorder = 0.75}}, {}}};
    QTextDocument editor;
    RichTextConversion::write(document, editor);
    auto* table = qobject_cast<QTextTable*>(editor.rootFrame()->childFrames().value(0));
    ASSERT_NE(table, nullptr);
    table->cellAt(0, 0).firstCursorPosition().insertText("x");
    const RichDocument read = RichTextConversion::read(editor);
    EXPECT_EQ(read.paragraphs[0].runs.at(0), (TextRun{"x", {.points = 12}}));
    EXPECT_EQ(read.paragraphs[0].block->bottomBorder, 0.75);
}

}  // namespace
}  // namespace sorvane
