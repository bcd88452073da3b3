#pragma once

#include <memory>
#include <vector>

#include <QLayout>

namespace sorvane {

/// Widgets of their own width from left to right, going on below where the row is full.
class WrapLayout final : public QLayout {
public:
    explicit WrapLayout(int spacing);
    ~WrapLayout() override;

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
    std::vector<QRect> places(int width) const;

    std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace sorvane
