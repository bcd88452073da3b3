#include "SorvaneCore/Dataset/ImportRows.h"

#include <algorithm>
#include <cassert>

namespace sorvane {

ImportRowNormalizationReport ImportRowNormalizationReport::of(std::int64_t sourceRowNumber,
                                                              std::int64_t originalColumnCount,
                                                              std::int64_t columnCount) {
    return {.sourceRowNumber = sourceRowNumber,
            .originalColumnCount = originalColumnCount,
            .normalizedColumnCount = columnCount,
            .extraFieldCount = std::max<std::int64_t>(originalColumnCount - columnCount, 0),
            .paddedFieldCount = std::max<std::int64_t>(columnCount - originalColumnCount, 0)};
}

void ImportRowReports::append(const ImportRowNormalizationReport& report) {
    const std::size_t index = size_;
    appendOrdinary(report.sourceRowNumber, 1);
    if (report !=
        ImportRowNormalizationReport::of(report.sourceRowNumber, columnCount_, columnCount_)) {
        deviations_.push_back({.index = index, .report = report});
    }
}

void ImportRowReports::appendOrdinary(std::int64_t sourceRowNumber, std::size_t count) {
    if (count == 0) {
        return;
    }
    if (runs_.empty() || this->sourceRowNumber(size_) != sourceRowNumber) {
        runs_.push_back({.index = size_, .sourceRowNumber = sourceRowNumber});
    }
    size_ += count;
}

ImportRowNormalizationReport ImportRowReports::operator[](std::size_t index) const {
    assert(index < size_);
    const auto deviation = std::lower_bound(
        deviations_.begin(), deviations_.end(), index,
        [](const Deviation& entry, std::size_t wanted) { return entry.index < wanted; });
    if (deviation != deviations_.end() && deviation->index == index) {
        return deviation->report;
    }
    return ImportRowNormalizationReport::of(sourceRowNumber(index), columnCount_, columnCount_);
}

std::int64_t ImportRowReports::sourceRowNumber(std::size_t index) const {
    const auto next = std::upper_bound(
        runs_.begin(), runs_.end(), index,
        [](std::size_t wanted, const NumberRun& run) { return wanted < run.index; });
    const NumberRun& run = *(next - 1);
    return run.sourceRowNumber + static_cast<std::int64_t>(index - run.index);
}

ImportRowSummaries::ImportRowSummaries(ImportRowReports reports,
                                       std::vector<std::uint32_t> missingCounts,
                                       std::int64_t columnCount)
    : reports_(std::move(reports)),
      missingCounts_(std::move(missingCounts)),
      columnCount_(columnCount) {
    assert(reports_.size() == missingCounts_.size());
}

ImportRowSummary ImportRowSummaries::operator[](std::size_t index) const {
    const ImportRowNormalizationReport report = reports_[index];
    const std::int64_t missing = missingCounts_[index];
    return {.dataRowIndex = static_cast<std::int64_t>(index) + 1,
            .sourceRowNumber = report.sourceRowNumber,
            .missingCount = missing,
            .nonMissingCount = std::max<std::int64_t>(columnCount_ - missing, 0),
            .originalColumnCount = report.originalColumnCount,
            .normalizedColumnCount = report.normalizedColumnCount,
            .extraFieldCount = report.extraFieldCount,
            .paddedFieldCount = report.paddedFieldCount};
}

}  // namespace sorvane
