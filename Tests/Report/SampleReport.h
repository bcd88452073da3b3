#pragma once

#include <cstdint>
#include <vector>

#include "SorvaneMac/Report/ReportItem.h"

namespace sorvane::test {

/// A PNG of 2 by 1 pixels.
inline std::vector<std::uint8_t> smallPicture() {
    return {0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48,
            0x44, 0x52, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00,
            0x00, 0xD1, 0x49, 0x20, 0x56, 0x00, 0x00, 0x00, 0x0B, 0x49, 0x44, 0x41, 0x54, 0x78,
            0x9C, 0x63, 0xF8, 0xDF, 0x00, 0x00, 0x02, 0x81, 0x01, 0x80, 0x59, 0xE9, 0x2F, 0xFC,
            0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};
}

inline ReportTable sampleTable() {
    return {.headers = {"Item", "M", "r"},
            .rows = {{"ei01", "31.24", "0.61"}, {"ei<2> & co", "0.51", "-0.58"}},
            .note = "n = 287."};
}

/// Two findings: one with a spanning head, a figure and a caution, one with two tables.
inline std::vector<ReportItem> sampleReport() {
    ReportTable spanned = sampleTable();
    spanned.groupHeaders = std::vector<ReportGroupHeader>{{"", 1}, {"Scale", 2}};
    spanned.note.reset();
    spanned.title = "Item statistics";
    return {{.title = "Reliability: Ängste",
             .apaSummary = "α = .85, \U0001D465 {x} \\ tab\there.\nSecond line.",
             .table = spanned,
             .caution = "Alpha is not validity.",
             .figure = smallPicture(),
             .figureCaption = "Items."},
            {.title = "Correlation",
             .apaSummary = "r(285) = .31, p < .001.",
             .table = sampleTable(),
             .extraTables = std::vector<ReportTable>{sampleTable()}}};
}

}  // namespace sorvane::test
