#pragma once

#include <QHeaderView>

namespace sorvane {

class DataGridModel;

/// The heads of the grid: name, label where there are any, role and missing share, a line
/// each.
class DataGridHeader final : public QHeaderView {
public:
    explicit DataGridHeader(const DataGridModel& model);

    /// A width for the head of a column and its first cells, within reason.
    int suitableWidth(int column) const;

protected:
    QSize sizeHint() const override;
    void paintSection(QPainter* painter, const QRect& area, int section) const override;

private:
    int lineCount() const;

    const DataGridModel& model_;
};

}  // namespace sorvane
