#include "SorvaneMac/Shell/ApaTableLayout.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

ReportTable table(std::vector<std::string> headers, std::vector<std::vector<std::string>> rows) {
    ReportTable made;
    made.headers = std::move(headers);
    made.rows = std::move(rows);
    return made;
}

/// The columns of pixels in which something is drawn between two heights.
std::vector<int> inkedColumns(const ReportTable& content, int top, int bottom) {
    ApaTableLayout layout(content);
    layout.setWidth(layout.naturalWidth());
    QImage image(layout.width(), layout.height(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    layout.paint(painter, image.rect());
    std::vector<int> columns;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = top; y < bottom; ++y) {
            if (qGray(image.pixel(x, y)) < 128) {
                columns.push_back(x);
                break;
            }
        }
    }
    return columns;
}

TEST(ApaTableLayout, WrapsHeadsAndLongTextsBeforeItScrolls) {
    offscreenApplication();
    ApaTableLayout layout(
        table({"Item", "Corrected Item-Total Correlation"},
              {{"A question of many words that nobody wants on one line", ".52"}}));
    EXPECT_LT(layout.minimumWidth(), layout.naturalWidth());
    layout.setWidth(layout.naturalWidth());
    const int relaxed = layout.height();
    layout.setWidth(layout.minimumWidth());
    EXPECT_GT(layout.height(), relaxed);
    layout.setWidth(layout.minimumWidth() / 2);
    EXPECT_EQ(layout.width(), layout.minimumWidth());
}

TEST(ApaTableLayout, DropsTheLeadingZeroOfBoundedNumbers) {
    offscreenApplication();
    const ApaTableLayout bounded(table({"", "p"}, {{"a", "0.45678901234567890123456789"}}));
    const ApaTableLayout free(table({"", "q"}, {{"a", "0.45678901234567890123456789"}}));
    EXPECT_LT(bounded.naturalWidth(), free.naturalWidth());
}

TEST(ApaTableLayout, AlignsNumbersAtTheDecimalPoint) {
    offscreenApplication();
    // A whole number and the same number with decimals begin at the same place.
    const ReportTable numbers = table({"", "B"}, {{"", "12"}, {"", "12.345"}});
    ApaTableLayout layout(numbers);
    layout.setWidth(layout.naturalWidth());
    const int body = layout.height() / 2;
    const int first = body - 10;
    const std::vector<int> upper = inkedColumns(numbers, first, first + 12);
    const std::vector<int> lower = inkedColumns(numbers, layout.height() - 18, layout.height() - 6);
    ASSERT_FALSE(upper.empty());
    ASSERT_FALSE(lower.empty());
    EXPECT_NEAR(upper.front(), lower.front(), 2);
    EXPECT_LT(upper.back() + 8, lower.back());
}

TEST(ApaTableLayout, BreaksLongNamesAndLabelsOfGroupsInsteadOfCuttingThem) {
    offscreenApplication();
    const QFontMetrics bold(Theme::font(13, QFont::DemiBold));
    const std::string name = "satisfaction_with_the_safety_of_the_workplace_at_present";
    ReportTable content = table({"Variable", "1"}, {{name, ".52"}});
    content.groupHeaders = {{"", 1}, {"Standardized coefficients", 1}};
    ApaTableLayout layout(content);
    EXPECT_GT(layout.naturalWidth(), bold.horizontalAdvance("Standardized coefficients"));
    EXPECT_LT(layout.minimumWidth(), bold.horizontalAdvance(qtText(name)));
    layout.setWidth(layout.naturalWidth() * 2);
    const int relaxed = layout.height();
    layout.setWidth(layout.minimumWidth());
    EXPECT_GT(layout.height(), relaxed + bold.lineSpacing());
}

TEST(ApaTableLayout, KeepsItsNoteInsideOfTheRoomWhereTheTableIsCut) {
    offscreenApplication();
    ReportTable wide = table({"a", "b", "c"}, {{"1234567.890", "1234567.890", "1234567.890"}});
    wide.note = "A note that stands on one line where there is room for the whole of it.";
    ApaTableLayout layout(wide);
    layout.setWidth(layout.minimumWidth() * 3);
    const int oneLine = layout.height();
    const int room = layout.minimumWidth() / 2;
    layout.setWidth(room);
    EXPECT_GT(layout.width(), room);
    EXPECT_GT(layout.height(), oneLine);
    QImage image(layout.width(), layout.height(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    layout.paint(painter, image.rect(), 40);
    const auto isInked = [&image](int left, int right) {
        for (int x = left; x < right; ++x) {
            for (int y = image.height() - 8; y < image.height(); ++y) {
                if (qGray(image.pixel(x, y)) < 128) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_FALSE(isInked(0, 40));
    EXPECT_TRUE(isInked(40, 40 + room));
    EXPECT_FALSE(isInked(40 + room, image.width()));
}

TEST(ApaTableLayout, TakesRaggedRowsAndWideGroups) {
    offscreenApplication();
    ReportTable ragged = table({"a"}, {{"1", "2", "3"}, {}});
    ragged.groupHeaders = {{"All", 99}, {"None", 1}};
    ragged.boldMask = std::vector<std::vector<bool>>(1, std::vector<bool>(1, true));
    ragged.note = "A note.";
    ApaTableLayout layout(ragged);
    layout.setWidth(200);
    QImage image(200, layout.height(), QImage::Format_RGB32);
    QPainter painter(&image);
    layout.paint(painter, image.rect());
    EXPECT_GT(layout.height(), 60);
    ApaTableLayout empty{ReportTable()};
    empty.setWidth(200);
    empty.paint(painter, image.rect());
}

}  // namespace
}  // namespace sorvane
