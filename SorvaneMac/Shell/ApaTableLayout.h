#pragma once

#include <vector>

#include <QFont>
#include <QRect>
#include <QString>

#include "SorvaneMac/Report/ReportItem.h"

class QPainter;

namespace sorvane {

/// A table in the three-rule style of the report: where everything stands at a given width.
///
/// Heads are bold and centred, symbols in them italic; the first column stands left, all others
/// stand centred, columns of numbers as a block aligned at the decimal point.
class ApaTableLayout {
public:
    /// Takes the table as the reader sees it: bounded numbers lose their leading zero here.
    explicit ApaTableLayout(const ReportTable& table);

    /// Below this width the table is cut and must be scrolled. Its note takes any width.
    int minimumWidth() const { return minimumWidth_; }
    /// The width at which nothing wraps that need not.
    int naturalWidth() const { return naturalWidth_; }
    /// Lays the table out; at most twice as wide as it needs, so that rows can be followed.
    void setWidth(int width);
    int width() const { return width_; }
    int height() const { return height_; }

    /// Input      scrolled: how far the table is scrolled; its note stays in view
    void paint(QPainter& painter, const QRect& clip, int scrolled = 0) const;

private:
    struct Cell {
        QString text;
        bool isBold = false;
        /// Width of what stands before the decimal point; the whole where there is none.
        int lead = 0;
        int width = 0;
    };
    struct Column {
        QString head;
        bool headIsItalic = false;
        bool isNumeric = false;
        /// Long texts, which read from the left.
        bool isProse = false;
        int minimum = 0;
        int natural = 0;
        /// Widest lead and widest rest of a column of numbers.
        int lead = 0;
        int rest = 0;
        int left = 0;
        int width = 0;
    };
    struct Group {
        QString label;
        int firstColumn = 0;
        int span = 1;
    };

    void readCells(const ReportTable& table);
    void readGroups(const ReportTable& table);
    void measureColumn(std::size_t index);
    int measureHead(const Column& column, int cellWidth) const;
    void shareWidth(int width);
    void placeRows();
    int cellHeight(const Cell& cell, const Column& column) const;

    void paintHead(QPainter& painter) const;
    void paintGroups(QPainter& painter) const;
    void paintRow(QPainter& painter, std::size_t row) const;
    void paintRules(QPainter& painter) const;
    void paintNote(QPainter& painter, int left) const;
    QRect box(const Column& column, int top, int height) const;
    int groupWidth(const Group& group) const;
    void makeRoomFor(const Group& group);

    QFont body_;
    QFont bold_;
    QFont italicHead_;
    QFont note_;
    std::vector<Column> columns_;
    std::vector<std::vector<Cell>> rows_;
    std::vector<Group> groups_;
    QString noteText_;
    int minimumWidth_ = 0;
    int naturalWidth_ = 0;
    int width_ = -1;
    /// The width that was given, which may be less than the table's.
    int room_ = -1;
    int height_ = 0;
    int groupHeight_ = 0;
    int headHeight_ = 0;
    /// Tops of the rows, and the bottom of the last.
    std::vector<int> rowTops_;
};

}  // namespace sorvane
