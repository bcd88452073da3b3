#pragma once

#include <memory>
#include <vector>

#include <QLayout>

namespace sorvane {

/// Cards from left to right and top to bottom: two side by side where both fit, else one a row.
///
/// A widget with the dynamic property "wide" stands alone in its row. The cards of a row are of
/// one height.
class FlowLayout final : public QLayout {
public:
    explicit FlowLayout(int spacing);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(items_.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    void setGeometry(const QRect& area) override;

private:
    struct Place {
        QLayoutItem* item;
        int left;
        int width;
    };
    using Row = std::vector<Place>;

    std::vector<Row> rowsAt(int width) const;
    static int rowHeight(const Row& row);

    std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace sorvane
