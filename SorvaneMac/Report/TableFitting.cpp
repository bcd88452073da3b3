#include "SorvaneMac/Report/TableFitting.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

#include <QAbstractTextDocumentLayout>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPaintDevice>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

#include "SorvaneMac/Report/UnbrokenText.h"

namespace sorvane::TableFitting {

namespace {

constexpr double closePadding = 2.5;
constexpr double smallestScale = 0.6;
constexpr int fullPointsProperty = QTextFormat::UserProperty + 2;
constexpr int fittedPointsProperty = QTextFormat::UserProperty + 3;
/// Pixels by which a column is wider than its longest word, for borders and against rounding.
constexpr double slack = 3.0;

/// One that no joiner holds, see `UnbrokenText`.
const QRegularExpression& breakingBlank() {
    static const QRegularExpression blank(QString(" (?!%1)").arg(QChar(UnbrokenText::wordJoiner)));
    return blank;
}

struct SizedText {
    int first = 0;
    int end = 0;
    double points = 0;
};

class Fitting {
public:
    Fitting(QTextTable& table, double width)
        : table_(table),
          document_(*table.document()),
          device_(document_.documentLayout()->paintDevice()),
          // Formats measure in pixels of 1/96 inch; a layout without a device has the screen's.
          unitsPerPixel_(device_ ? device_->logicalDpiX() / 96.0 : 1.0),
          width_(width),
          padding_(table.format().cellPadding()),
          words_(widestWords()) {}

    void apply() {
        const double equal = width_ / static_cast<double>(words_.size());
        if (std::ranges::all_of(needs(), [equal](double need) { return need <= equal; })) {
            return;
        }
        if (total() > width_) {
            padding_ = closePadding;
        }
        if (total() > width_) {
            shrinkText();
        }
        setColumns();
    }

private:
    template <typename Visit>
    void forEachFragment(const QTextTableCell& cell, Visit visit) const {
        for (auto at = cell.begin(); !at.atEnd(); ++at) {
            const QTextBlock block = at.currentBlock();
            for (auto part = block.begin(); !part.atEnd(); ++part) {
                visit(part.fragment());
            }
        }
    }

    QFont fontOf(const QTextFragment& fragment) const {
        return fragment.charFormat().font().resolve(document_.defaultFont());
    }

    double pointsOf(const QTextFragment& fragment) const {
        const QFont font = fontOf(fragment);
        return font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
    }

    double widestWord(const QTextFragment& fragment, double scale) const {
        QFont font = fontOf(fragment);
        if (scale < 1.0) {
            font.setPointSizeF(scale * pointsOf(fragment));
        }
        const QFontMetricsF metrics = device_ ? QFontMetricsF(font, device_) : QFontMetricsF(font);
        double widest = 0;
        QString text = fragment.text();
        text.replace(QChar::LineSeparator, ' ');
        for (const QString& word : text.split(breakingBlank(), Qt::SkipEmptyParts)) {
            widest = std::max(widest, metrics.horizontalAdvance(word));
        }
        return widest;
    }

    /// Of each column, less those cells that span several, with text of a share of its size.
    std::vector<double> widestWords(double scale = 1.0) const {
        std::vector<double> widest(static_cast<std::size_t>(table_.columns()), 0.0);
        for (int row = 0; row < table_.rows(); ++row) {
            for (int column = 0; column < table_.columns(); ++column) {
                const QTextTableCell cell = table_.cellAt(row, column);
                if (cell.columnSpan() > 1) {
                    continue;
                }
                double& word = widest[static_cast<std::size_t>(column)];
                forEachFragment(cell, [&](const QTextFragment& fragment) {
                    word = std::max(word, widestWord(fragment, scale));
                });
            }
        }
        return widest;
    }

    std::vector<double> needs() const {
        std::vector<double> all = words_;
        for (double& need : all) {
            need += (2 * padding_ + slack) * unitsPerPixel_;
        }
        return all;
    }

    double total() const {
        const std::vector<double> all = needs();
        return std::accumulate(all.begin(), all.end(), 0.0);
    }

    /// Measures the words by the way: in another size they are not wider in proportion.
    double fittingScale() {
        constexpr int mostSteps = 4;
        double scale = 1.0;
        for (int step = 0; step < mostSteps && scale > smallestScale && total() > width_; ++step) {
            const double words = std::accumulate(words_.begin(), words_.end(), 0.0);
            scale = std::max(scale * (width_ - (total() - words)) / words, smallestScale);
            words_ = widestWords(scale);
        }
        return scale;
    }

    void shrinkText() {
        const double scale = fittingScale();
        // Changing the style of a fragment may unite it with its neighbours.
        std::vector<SizedText> texts;
        for (int row = 0; row < table_.rows(); ++row) {
            for (int column = 0; column < table_.columns(); ++column) {
                const QTextTableCell cell = table_.cellAt(row, column);
                if (cell.column() == column) {
                    forEachFragment(cell, [&](const QTextFragment& fragment) {
                        texts.push_back({.first = fragment.position(),
                                         .end = fragment.position() + fragment.length(),
                                         .points = pointsOf(fragment)});
                    });
                }
            }
        }
        for (const SizedText& text : texts) {
            shrink(text, scale);
        }
    }

    void shrink(const SizedText& text, double scale) {
        QTextCharFormat size;
        size.setFontPointSize(text.points * scale);
        size.setProperty(fullPointsProperty, text.points);
        size.setProperty(fittedPointsProperty, text.points * scale);
        QTextCursor cursor(&document_);
        cursor.setPosition(text.first);
        cursor.setPosition(text.end, QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(size);
    }

    /// What each column gets of the whole.
    std::vector<double> shares() const {
        const std::vector<double> all = needs();
        std::vector<bool> isGiven(all.size(), false);
        double rest = width_;
        auto open = static_cast<double>(all.size());
        for (bool isSettled = false; !isSettled && open > 0;) {
            isSettled = true;
            const double part = rest / open;
            for (std::size_t at = 0; at < all.size(); ++at) {
                if (!isGiven[at] && all[at] > part) {
                    isGiven[at] = true;
                    isSettled = false;
                    rest -= all[at];
                    --open;
                }
            }
        }
        std::vector<double> widths = all;
        for (std::size_t at = 0; at < all.size(); ++at) {
            widths[at] = isGiven[at] ? all[at] : rest / open;
        }
        return widths;
    }

    void setColumns() {
        QTextTableFormat format = table_.format();
        QList<QTextLength> lengths;
        const std::vector<double> widths = shares();
        const double sum = std::accumulate(widths.begin(), widths.end(), 0.0);
        for (const double width : widths) {
            lengths << QTextLength(QTextLength::PercentageLength, 100.0 * width / sum);
        }
        format.setColumnWidthConstraints(lengths);
        format.setCellPadding(padding_);
        table_.setFormat(format);
    }

    QTextTable& table_;
    QTextDocument& document_;
    QPaintDevice* device_;
    double unitsPerPixel_;
    double width_;
    /// In pixels.
    double padding_;
    std::vector<double> words_;
};

}  // namespace

void fit(QTextDocument& document, double width) {
    for (QTextFrame* frame : document.rootFrame()->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(frame)) {
            Fitting(*table, width).apply();
        }
    }
}

double fullPoints(const QTextCharFormat& format) {
    const double points = format.fontPointSize();
    return points == format.doubleProperty(fittedPointsProperty)
               ? format.doubleProperty(fullPointsProperty)
               : points;
}

}  // namespace sorvane::TableFitting
