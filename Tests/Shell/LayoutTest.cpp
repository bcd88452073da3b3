#include <QWidget>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/FlowLayout.h"
#include "SorvaneMac/Shell/WrapLayout.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

/// A box of a certain size, which grows to twice its height at half its width where it is soft.
class Box final : public QWidget {
public:
    enum class Kind { firm, soft };

    Box(int width, int height, Kind kind = Kind::firm) : size_(width, height) {
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
        policy.setHeightForWidth(kind == Kind::soft);
        setSizePolicy(policy);
    }
    QSize sizeHint() const override { return size_; }
    QSize minimumSizeHint() const override { return {size_.width() / 2, size_.height()}; }
    int heightForWidth(int width) const override {
        return size_.width() * size_.height() / std::max(width, 1);
    }

private:
    QSize size_;
};

/// A pane whose boxes stand where the layout puts them.
template <typename Layout>
class Pane {
public:
    explicit Pane(const std::vector<Box*>& boxes) : boxes_(boxes), layout_(new Layout(10)) {
        offscreenApplication();
        pane_.setLayout(layout_);
        for (Box* box : boxes) {
            layout_->addWidget(box);
        }
    }
    std::vector<QRect> places(int width) {
        const int height = layout_->heightForWidth(width);
        pane_.resize(width, height);
        layout_->setGeometry(QRect(0, 0, width, height));
        std::vector<QRect> found;
        for (const Box* box : boxes_) {
            found.push_back(box->geometry());
        }
        return found;
    }
    Layout& layout() { return *layout_; }

private:
    QWidget pane_;
    std::vector<Box*> boxes_;
    Layout* layout_;
};

using Places = std::vector<QRect>;

TEST(WrapLayout, GoesOnBelowWhereTheRowIsFull) {
    Pane<WrapLayout> pane({new Box(100, 20), new Box(60, 30), new Box(80, 20)});
    EXPECT_EQ(pane.places(270), (Places{{0, 5, 100, 20}, {110, 0, 60, 30}, {180, 5, 80, 20}}));
    EXPECT_EQ(pane.places(260), pane.places(270)) << "the last item just fits";
    EXPECT_EQ(pane.places(259), (Places{{0, 5, 100, 20}, {110, 0, 60, 30}, {0, 40, 80, 20}}));
    EXPECT_EQ(pane.places(100), (Places{{0, 0, 100, 20}, {0, 30, 60, 30}, {0, 70, 80, 20}}));
    EXPECT_EQ(pane.places(40).back().y(), 70) << "an item wider than the pane has a row of its own";
    EXPECT_EQ(pane.layout().heightForWidth(100), 90);
    EXPECT_EQ(pane.layout().minimumSize(), QSize(100, 30));
    EXPECT_GE(pane.layout().sizeHint().width(), 260);
    EXPECT_EQ(pane.layout().sizeHint().height(), 30);
}

TEST(WrapLayout, LeavesNoGapForAHiddenItem) {
    auto* hidden = new Box(60, 40);
    Pane<WrapLayout> pane({new Box(100, 20), hidden, new Box(80, 20)});
    hidden->hide();
    const Places places = pane.places(200);
    EXPECT_EQ(places.front(), QRect(0, 0, 100, 20));
    EXPECT_EQ(places.back(), QRect(110, 0, 80, 20));
    EXPECT_EQ(pane.layout().heightForWidth(200), 20);
}

TEST(FlowLayout, PutsTwoCardsSideBySideWhereBothFit) {
    Pane<FlowLayout> pane({new Box(100, 50), new Box(200, 80), new Box(90, 30)});
    EXPECT_EQ(pane.places(340), (Places{{0, 0, 110, 80}, {120, 0, 220, 80}, {0, 90, 340, 30}}));
    EXPECT_EQ(pane.places(310), (Places{{0, 0, 100, 80}, {110, 0, 200, 80}, {0, 90, 310, 30}}));
    EXPECT_EQ(pane.places(309), (Places{{0, 0, 309, 50}, {0, 60, 206, 80}, {216, 60, 93, 80}}));
    EXPECT_EQ(pane.layout().minimumSize(), QSize(100, 0));
}

TEST(FlowLayout, GivesAWideCardTheWholeRow) {
    auto* wide = new Box(100, 40);
    wide->setProperty("wide", true);
    Pane<FlowLayout> pane({new Box(100, 50), wide, new Box(100, 20), new Box(100, 30)});
    EXPECT_EQ(pane.places(410),
              (Places{{0, 0, 410, 50}, {0, 60, 410, 40}, {0, 110, 200, 30}, {210, 110, 200, 30}}));
}

TEST(FlowLayout, MakesRoomForTextThatWraps) {
    Pane<FlowLayout> pane({new Box(400, 50, Box::Kind::soft)});
    EXPECT_EQ(pane.places(200).front().height(), 100);
    EXPECT_EQ(pane.places(400).front().height(), 50);
}

TEST(RowedLayout, TakesItsItemsOutAgain) {
    Pane<WrapLayout> pane({new Box(100, 20), new Box(60, 20)});
    QLayout& layout = pane.layout();
    EXPECT_EQ(layout.itemAt(-1), nullptr);
    EXPECT_EQ(layout.itemAt(2), nullptr);
    EXPECT_EQ(layout.takeAt(2), nullptr);
    QLayoutItem* const second = layout.itemAt(1);
    delete layout.takeAt(0);
    EXPECT_EQ(layout.count(), 1);
    EXPECT_EQ(layout.itemAt(0), second);
    EXPECT_EQ(layout.heightForWidth(500), 20);
}

}  // namespace
}  // namespace sorvane
