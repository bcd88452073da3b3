#include "SorvaneMac/Shell/ChartView.h"

#include <QAction>
#include <QClipboard>
#include <QImage>
#include <QMimeData>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/ChartInk.h"
#include "SorvaneMac/Shell/Theme.h"
#include "Tests/Shell/ChartGallery.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

Chart bars() {
    return {.title = "Loadings",
            .xLabel = "r",
            .plot = BarPlot{.labels = {"a", "b"}, .values = {0.5, 0.25}}};
}

bool hasColor(const QImage& image, const QColor& color) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == color) {
                return true;
            }
        }
    }
    return false;
}

TEST(ChartView, CopiesThePictureInBothForms) {
    ChartView view(bars());
    ASSERT_EQ(view.actions().size(), 2);
    view.actions().front()->trigger();
    const QMimeData* copied = QGuiApplication::clipboard()->mimeData();
    ASSERT_TRUE(copied->hasImage());
    EXPECT_EQ(qvariant_cast<QImage>(copied->imageData()).width(), 1950);
    EXPECT_TRUE(copied->data("image/svg+xml").contains(">.25</text>"));
}

TEST(ChartView, SaysWhatItShows) {
    const ChartView view(bars());
    EXPECT_EQ(view.accessibleName(), "Loadings");
    EXPECT_EQ(view.accessibleDescription(),
              "Bar chart of r with 2 bars, lowest b (0.25) and highest a (0.5).");
}

TEST(ChartView, GrowsWithTheScaleAndFollowsTheAppearance) {
    ChartView view(bars());
    view.resize(view.sizeHint());
    const QSize atOne = view.sizeHint();
    const QImage light = view.grab().toImage();
    Theme::apply(offscreenApplication(), Appearance::dark, 2.0);
    EXPECT_EQ(view.sizeHint(), atOne * 2);
    view.resize(view.sizeHint());
    const QImage dark = view.grab().toImage();
    const QColor bar = ChartInk::screen().primary;
    EXPECT_TRUE(hasColor(dark, bar));
    EXPECT_FALSE(hasColor(light, bar));
    Theme::apply(offscreenApplication(), Appearance::light);
}

}  // namespace
}  // namespace sorvane
