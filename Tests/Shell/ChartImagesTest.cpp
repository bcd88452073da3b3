#include "SorvaneMac/Shell/ChartImages.h"

#include <algorithm>
#include <cmath>

#include <QColor>
#include <QImage>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include "SorvaneMac/Report/InlineFigure.h"
#include "SorvaneMac/Shell/ChartInk.h"
#include "Tests/Shell/ChartGallery.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

QImage drawn(const Chart& chart) {
    const std::vector<std::uint8_t> png = chartPng(chart);
    return QImage::fromData(png.data(), static_cast<int>(png.size()), "PNG");
}

std::string svgOf(const Chart& chart) {
    const std::vector<std::uint8_t> svg = chartSvg(chart);
    return {svg.begin(), svg.end()};
}

int count(const QImage& image, const QColor& color) {
    int found = 0;
    for (int y = 0; y < image.height(); y += 3) {
        for (int x = 0; x < image.width(); x += 3) {
            found += image.pixelColor(x, y) == color ? 1 : 0;
        }
    }
    return found;
}

TEST(ChartImages, FillsTheColumnOfAReportAt300Dots) {
    for (const auto& [name, chart] : chartGallery()) {
        const std::vector<std::uint8_t> png = chartPng(chart);
        const QImage image = drawn(chart);
        EXPECT_EQ(image.width(), 1950) << name;
        EXPECT_NEAR(image.dotsPerMeterX() * 0.0254, 300.0, 0.5) << name;
        EXPECT_NEAR(image.dotsPerMeterY() * 0.0254, 300.0, 0.5) << name;
        EXPECT_EQ(image.pixelColor(0, 0), Qt::white) << name;
        const auto figure = inlineFigure(png);
        ASSERT_TRUE(figure) << name;
        EXPECT_NEAR(figure->width, 468.0, 0.1) << name;
        EXPECT_NEAR(figure->height, image.height() / 300.0 * 72.0, 0.2) << name;
    }
    BarPlot many;
    many.labels.assign(200, "item");
    many.values.assign(200, 0.5);
    const auto tall = inlineFigure(chartPng({.plot = many}));
    EXPECT_NEAR(tall->width, 468.0, 0.1);
}

TEST(ChartImages, KeepsTextAsTextInDrawings) {
    const std::pair<const char*, std::vector<const char*>> expected[] = {
        {"histogram", {"Age", "Cases", "20"}},
        {"box", {"Control", "Workshop", "Score"}},
        {"bar", {"item2", ".21", ".30", "Item-total r"}},
        {"beside", {"Disagree", "Workshop", "60%"}},
        {"shares", {"Neither", "45", "100%"}},
        {"intervals", {"Online", "0.4"}},
        {"profile", {"Women", "Follow-up", "Mean score"}},
        {"survival", {"Treated", "Control", "Months"}},
        {"scree", {"Eigenvalue of 1", "Elbow", "Random data"}},
        {"heat", {"item6", "-.79", "1.00"}},
        {"tree", {"Anna", "Emil", "Height"}},
        {"mediation", {"Confidence", ".42"}},
        {"factors", {"Factor 3", "item3_4", ".73"}},
    };
    const auto gallery = chartGallery();
    for (const auto& [name, texts] : expected) {
        const auto found =
            std::find_if(gallery.begin(), gallery.end(),
                         [&wanted = name](const auto& each) { return each.first == wanted; });
        ASSERT_NE(found, gallery.end()) << name;
        const std::string svg = svgOf(found->second);
        for (const char* const text : texts) {
            EXPECT_NE(svg.find(std::string(">") + text + "</text>"), std::string::npos)
                << name << ": " << text;
        }
    }
}

TEST(ChartImages, EscapesNamesInDrawings) {
    const std::string svg = svgOf({.title = "a < b",
                                   .xLabel = "a < b & c",
                                   .plot = BarPlot{.labels = {"<i>x"}, .values = {1}}});
    EXPECT_NE(svg.find(">a &lt; b &amp; c</text>"), std::string::npos);
    EXPECT_NE(svg.find(">&lt;i&gt;x</text>"), std::string::npos);
    QXmlStreamReader reader(svg.c_str());
    QString title;
    while (!reader.atEnd()) {
        const bool isTitle = reader.readNext() == QXmlStreamReader::StartElement &&
                             reader.name() == QStringLiteral("title");
        title = isTitle ? reader.readElementText() : title;
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    EXPECT_EQ(title, "a < b");
}

TEST(ChartImages, DrawsAHundredThousandPointsAsOnePicture) {
    ScatterPlot plot;
    for (int at = 0; at < 100000; ++at) {
        plot.x.push_back(std::sin(at * 12.9898) + std::sin(at * 0.618));
        plot.y.push_back(std::sin(at * 78.233) + plot.x.back());
    }
    const Chart chart{.plot = plot};
    EXPECT_LT(svgOf(chart).size(), 2000000U);
    EXPECT_LT(count(drawn(chart), Qt::white), 500 * 650);
}

TEST(ChartImages, WritesFiguresBeyondTheEndsOfBarsToBothSides) {
    const BarPlot bars{.labels = {"a", "b"}, .values = {0.5, -0.5}};
    const QImage image = drawn({.plot = bars});
    // Of each half, the first and the last column with the colour of the bars, and with ink.
    const auto span = [&image](int top, auto isWanted) {
        int first = image.width();
        int last = -1;
        for (int x = 200; x < image.width(); ++x) {
            for (int y = top; y < top + image.height() / 4; ++y) {
                if (isWanted(image.pixelColor(x, y))) {
                    first = std::min(first, x);
                    last = x;
                }
            }
        }
        return std::pair(first, last);
    };
    const QColor bar = ChartInk::print().primary;
    const QColor ink = ChartInk::print().text;
    const auto isBar = [&bar](const QColor& color) {
        return color == bar;
    };
    const auto isInk = [&ink](const QColor& color) {
        return color == ink;
    };
    const int upper = image.height() / 8;
    const int lower = image.height() / 2;
    EXPECT_GT(span(upper, isInk).second, span(upper, isBar).second);
    EXPECT_LT(span(lower, isInk).first, span(lower, isBar).first);
    EXPECT_LT(span(lower, isBar).second, span(upper, isBar).first + 3);
}

TEST(ChartImages, SetsBarsBelowTheReferenceApart) {
    BarPlot bars{.labels = {"a", "b"}, .values = {0.5, 0.6}, .reference = 0.3};
    const QColor apart = ChartInk::print().apart;
    EXPECT_EQ(count(drawn({.plot = bars}), apart), 0);
    bars.values = {0.5, 0.2};
    EXPECT_GT(count(drawn({.plot = bars}), apart), 100);
}

}  // namespace
}  // namespace sorvane
