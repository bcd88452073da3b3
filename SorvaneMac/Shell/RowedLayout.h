#pragma once

#include <memory>
#include <vector>

#include <QLayout>

namespace sorvane {

/// Items in rows, from left to right and top to bottom; each kind of layout says where they stand.
class RowedLayout : public QLayout {
public:
    explicit RowedLayout(int spacing);
    ~RowedLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(items_.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    void setGeometry(const QRect& area) override;

protected:
    using Items = std::vector<std::unique_ptr<QLayoutItem>>;

    /// Where the items stand, in their order, from (0, 0) on.
    virtual std::vector<QRect> places(int width) const = 0;
    const Items& items() const { return items_; }

private:
    Items items_;
};

}  // namespace sorvane
