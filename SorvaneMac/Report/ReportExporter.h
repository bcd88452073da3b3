#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane::ReportExporter {

/// The report as one document: its title, the dataset, then each finding with its sentence, tables,
/// figure and caution.
///
/// Input      cases: the number of rows of the dataset
/// Method     tables and figures are numbered across the report; one empty line sets findings,
///            tables and figures apart, because Word and plain text take no spacing from the
///            paragraphs
/// Returns    title and dataset line alone when there are no items      Cost linear in the cells
RichDocument attributed(std::span<const ReportItem> items,
                        std::string_view datasetName,
                        std::int64_t cases);

}  // namespace sorvane::ReportExporter
