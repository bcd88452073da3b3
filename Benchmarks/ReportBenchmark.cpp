#include <benchmark/benchmark.h>

#include "Benchmarks/Workload.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/DocxReportExporter.h"
#include "SorvaneMac/Report/ReportExporter.h"

namespace sorvane {

namespace {

ReportItem finding(int number) {
    ReportTable table;
    table.headers = {"Item", "M", "SD", "n", "r", "p"};
    for (int row = 1; row <= 12; ++row) {
        const double figure = (number * 12 + row) % 97;
        table.rows.push_back(
            {"Item " + std::to_string(row), NumberText::fixed(1.0 + figure / 25.0, 2),
             NumberText::fixed(0.5 + figure / 97.0, 2), NumberText::fixed(90.0 + row, 0),
             NumberText::fixed(figure / 97.0, 2), NumberText::fixed(figure / 100.0, 3)});
    }
    ReportItem item;
    item.title = "Finding " + std::to_string(number);
    item.apaSummary = "A one-way comparison found a difference, F(2, 97) = 4.31, p = .016.";
    item.table = table;
    item.caution = "Association, not causation.";
    return item;
}

/// From staged findings to the bytes of the Word file.
Workload wordReport(int tables, double targetSeconds) {
    return {.name = "docx_report",
            .size = std::to_string(tables),
            .targetSeconds = targetSeconds,
            .prepare = [=] {
                std::vector<ReportItem> items;
                for (int number = 1; number <= tables; ++number) {
                    items.push_back(finding(number));
                }
                return Job{.run =
                               [items] {
                                   auto bytes = DocxReportExporter::package(
                                       ReportExporter::attributed(items, "Benchmark", 100));
                                   benchmark::DoNotOptimize(bytes);
                               },
                           .amount = static_cast<double>(tables),
                           .unit = "tables"};
            }};
}

}  // namespace

std::vector<Workload> reportWorkloads() {
    return {wordReport(50, 0.01), wordReport(200, 0.04)};
}

}  // namespace sorvane
