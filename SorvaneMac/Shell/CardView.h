#pragma once

#include <functional>

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Shell/CardFrame.h"

namespace sorvane {

/// One card of a screen, drawn.
class CardView final : public CardFrame {
public:
    /// Input      open: goes to the screen of a link
    explicit CardView(const Card& card, std::function<void(const ScreenLink&)> open = {});

    /// Wide enough for its widest table or chart.
    QSize sizeHint() const override;

private:
    void addTable(const ReportTable& table);
    void addChart(const Chart& chart);
    void addPreformatted(const QString& text);
    void addPassage(const Passage& passage);
    void addFacts(const std::vector<Fact>& facts);
    void addEvidence(const EvidenceLine& line);
    void addLinks(const std::vector<ScreenLink>& links);

    std::function<void(const ScreenLink&)> open_;
    QString subtitle_;
    int contentWidth_;
};

}  // namespace sorvane
