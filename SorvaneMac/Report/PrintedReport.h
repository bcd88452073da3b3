#pragma once

#include <memory>

#include "SorvaneMac/Report/RichDocument.h"

class QPaintDevice;
class QPainter;

namespace sorvane {

/// A document laid out for paper, page by page.
///
/// Input      a QGuiApplication must exist, for its fonts; the device gives the resolution and
///            outlives the report
/// Method     the text document lays everything out on one endless page; the pages are cut between
///            its lines and rows and drawn line by line. A heading stays with what follows it, a
///            table that fits a page is not broken and keeps its note; the heads of a longer one
///            repeat
class PrintedReport {
public:
    /// The text area of US Letter within margins of 48 points.
    static constexpr double textWidth = 516;
    static constexpr double textHeight = 696;

    PrintedReport(const RichDocument& document, QPaintDevice& device);
    ~PrintedReport();

    /// At least 1: an empty document has an empty page.
    int pageCount() const;

    /// Draws a page, from 0 on, with the corner of its text area at the painter's origin.
    void drawPage(int page, QPainter& painter) const;

private:
    struct Layout;
    std::unique_ptr<Layout> layout_;
};

}  // namespace sorvane
