#pragma once

#include <QPlainTextEdit>

namespace sorvane {

/// Text whose columns count, such as a stem-and-leaf plot, as tall as its lines.
class PreformattedView final : public QPlainTextEdit {
public:
    explicit PreformattedView(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    QSize textSize_;
};

}  // namespace sorvane
