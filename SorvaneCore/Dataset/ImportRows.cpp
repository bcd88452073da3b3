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
    if (runs_.empty() ||
        runs_.back().sourceRowNumber + static_cast<std::int64_t>(size_ - runs_.back().index) !=
            sourceRowNumber) {
        runs_.push_back({.index = size_, .sourceRowNumber = sourceRowNumber});
    }
    size_ += count;
}

void ImportRowReports::append(const ImportRowReports& next, std::int64_t numberShift) {
    for (const Deviation& deviation : next.deviations_) {
        deviations_.push_back({.index = deviation.index + size_, .report = deviation.report});
        deviations_.back().report.sourceRowNumber += numberShift;
    }
    for (std::size_t run = 0; run < next.runs_.size(); ++run) {
        const std::size_t end =
            run + 1 < next.runs_.size() ? next.runs_[run + 1].index : next.size_;
        appendOrdinary(next.runs_[run].sourceRowNumber + numberShift, end - next.runs_[run].index);
    }
}

ImportRowReports ImportRowReports::resized(std::size_t rowCount, std::int64_t columnCount) const {
    ImportRowReports result = *this;
    if (size_ == 0) {
        result.columnCount_ = columnCount;
    }
    if (rowCount > size_) {
        result.appendOrdinary(static_cast<std::int64_t>(size_) + 2, rowCount - size_);
        return result;
    }
    result.size_ = rowCount;
    std::erase_if(result.runs_, [&](const NumberRun& run) { return run.index >= rowCount; });
    std::erase_if(result.deviations_, [&](const Deviation& row) { return row.index >= rowCount; });
    return result;
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
