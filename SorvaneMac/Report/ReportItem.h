#pragma once

#include <boost/describe/class.hpp>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/Uuid.h"

namespace sorvane {

/// A head that spans several columns of a table, above their own heads.
struct ReportGroupHeader {
    std::string label{};
    int span = 1;

    bool operator==(const ReportGroupHeader&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReportGroupHeader, (), (label, span))

/// A table as the reader sees it: every cell is display text, numbers already formatted with their
/// leading zero.
struct ReportTable {
    std::vector<std::string> headers{};
    std::vector<std::vector<std::string>> rows{};
    std::optional<std::string> note{};
    std::optional<std::vector<ReportGroupHeader>> groupHeaders{};
    /// Bold cells, parallel to `rows`.
    std::optional<std::vector<std::vector<bool>>> boldMask{};
    /// Absent: the title of the finding stands for it.
    std::optional<std::string> title{};

    bool operator==(const ReportTable&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReportTable, (), (headers, rows, note, groupHeaders, boldMask, title))

/// Whether the bold mask marks a body cell; false where the mask does not reach.
bool isBold(const ReportTable& table, std::size_t row, std::size_t column);

/// The parameters of a structural model, from which a viewer draws the path diagram.
struct SEMDiagramPayload {
    struct Param {
        std::string lhs{};
        std::string op{};
        std::string rhs{};
        std::optional<double> std{};

        bool operator==(const Param&) const = default;
    };

    std::vector<Param> parameters{};
    std::vector<std::string> latent{};
    std::vector<std::string> observed{};
    std::optional<std::string> fit{};

    bool operator==(const SEMDiagramPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(SEMDiagramPayload::Param, (), (lhs, op, rhs, std))
BOOST_DESCRIBE_STRUCT(SEMDiagramPayload, (), (parameters, latent, observed, fit))

/// A finding of an analysis: its sentence, tables, figure and warning.
struct ReportItem {
    Uuid id{};
    std::string title{};
    std::string apaSummary{};
    std::optional<ReportTable> table{};
    std::optional<std::vector<ReportTable>> extraTables{};
    std::optional<std::string> caution{};
    /// The rendered figure as PNG.
    std::optional<std::vector<std::uint8_t>> figure{};
    std::optional<std::string> figureCaption{};
    std::optional<SEMDiagramPayload> semDiagram{};

    bool operator==(const ReportItem&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    ReportItem,
    (),
    (id, title, apaSummary, table, extraTables, caution, figure, figureCaption, semDiagram))

}  // namespace sorvane
