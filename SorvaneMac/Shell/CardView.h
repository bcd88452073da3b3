#pragma once

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Shell/CardFrame.h"

namespace sorvane {

/// One card of a screen, drawn.
class CardView final : public CardFrame {
public:
    explicit CardView(const Card& card);

    /// Wide enough for its widest table or chart.
    QSize sizeHint() const override;

private:
    void addTable(const ReportTable& table);
    void addChart(const Chart& chart);
    void addPreformatted(const QString& text);
    void addEvidence(const EvidenceLine& line);

    QString subtitle_;
    int contentWidth_;
};

}  // namespace sorvane
