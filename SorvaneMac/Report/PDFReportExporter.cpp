#include "SorvaneMac/Report/PDFReportExporter.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>

#include "SorvaneMac/Report/PrintedReport.h"

namespace sorvane::PDFReportExporter {
namespace {

/// Fine enough that rounding to device units cannot be seen.
constexpr int dotsPerInch = 1200;
constexpr double margin = 48 * dotsPerInch / 72.0;

}  // namespace

std::vector<std::uint8_t> pdf(const RichDocument& document) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setResolution(dotsPerInch);
        writer.setPageSize(QPageSize(QPageSize::Letter));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setTitle("Results");
        const PrintedReport report(document, writer);
        QPainter painter(&writer);
        painter.translate(margin, margin);
        for (int page = 0; page < report.pageCount(); ++page) {
            if (page > 0) {
                writer.newPage();
            }
            report.drawPage(page, painter);
        }
    }
    return {bytes.begin(), bytes.end()};
}

}  // namespace sorvane::PDFReportExporter
