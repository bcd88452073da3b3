#include "SorvaneMac/Review/SEMDiagramBackfill.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::SEMDiagramBackfill {

namespace {

constexpr std::string_view measures = "=~";
/// The longer ones first, since "~" stands in each of them.
constexpr std::array<std::string_view, 4> operators = {measures, "~~", ":=", "~"};
constexpr std::string_view regression = "~";
/// A regression on it is an intercept.
constexpr std::string_view one = "1";
constexpr std::string_view fitLead = "Model fit:";

std::optional<std::size_t> columnNamed(const ReportTable& table,
                                       std::initializer_list<std::string_view> names) {
    for (std::size_t at = 0; at < table.headers.size(); ++at) {
        const std::string header = UnicodeText::lowerCased(UnicodeText::trimmed(table.headers[at]));
        if (std::ranges::find(names, header) != names.end()) {
            return at;
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> parameterColumn(const ReportTable& table) {
    return columnNamed(table, {"parameter"});
}

std::optional<std::size_t> standardizedColumn(const ReportTable& table) {
    return columnNamed(table, {"std.", "std"});
}

std::vector<SEMDiagramPayload::Param> parameters(const ReportTable& table) {
    const std::size_t named = *parameterColumn(table);
    const std::size_t standardized = *standardizedColumn(table);
    std::vector<SEMDiagramPayload::Param> found;
    for (const std::vector<std::string>& row : table.rows) {
        std::optional<SEMDiagramPayload::Param> parameter =
            named < row.size() ? parseParameter(row[named]) : std::nullopt;
        if (parameter) {
            parameter->std =
                standardized < row.size() ? parseNumber(row[standardized]) : std::nullopt;
            found.push_back(*std::move(parameter));
        }
    }
    return found;
}

void nameVariables(SEMDiagramPayload& diagram) {
    std::set<std::string_view> known;
    for (const SEMDiagramPayload::Param& each : diagram.parameters) {
        if (each.op == measures && known.insert(each.lhs).second) {
            diagram.latent.push_back(each.lhs);
        }
    }
    for (const SEMDiagramPayload::Param& each : diagram.parameters) {
        const bool isIntercept = each.op == regression && each.rhs == one;
        for (const std::string* side : {&each.lhs, &each.rhs}) {
            const bool isName = each.op != ":=" && !(isIntercept && side == &each.rhs);
            if (isName && known.insert(*side).second) {
                diagram.observed.push_back(*side);
            }
        }
    }
}

}  // namespace

bool isSEMTable(const ReportTable& table) {
    return parameterColumn(table) && standardizedColumn(table);
}

std::optional<SEMDiagramPayload> payload(const ReportTable& table) {
    if (!isSEMTable(table)) {
        return std::nullopt;
    }
    SEMDiagramPayload diagram{.parameters = parameters(table)};
    if (diagram.parameters.empty()) {
        return std::nullopt;
    }
    nameVariables(diagram);
    diagram.fit = fitSummary(table.note);
    return diagram;
}

std::optional<SEMDiagramPayload::Param> parseParameter(std::string_view text) {
    for (const std::string_view op : operators) {
        const std::size_t at = text.find(op);
        if (at == std::string_view::npos) {
            continue;
        }
        const std::string_view lhs = UnicodeText::trimmed(text.substr(0, at));
        const std::string_view rhs = UnicodeText::trimmed(text.substr(at + op.size()));
        if (lhs.empty() || rhs.empty()) {
            return std::nullopt;
        }
        return SEMDiagramPayload::Param{
            .lhs = std::string(lhs), .op = std::string(op), .rhs = std::string(rhs)};
    }
    return std::nullopt;
}

std::optional<double> parseNumber(std::string_view cell) {
    constexpr std::string_view minusSign = "−";
    std::string_view text = UnicodeText::trimmed(cell);
    text = UnicodeText::trimmed(text.substr(0, text.find('*')));
    std::string plain(text);
    if (text.starts_with(minusSign)) {
        plain = "-" + std::string(text.substr(minusSign.size()));
    }
    const std::optional<double> number = NumberText::parse(plain);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<std::string> fitSummary(const std::optional<std::string>& note) {
    constexpr std::string_view sentenceEnd = ". ";
    if (!note) {
        return std::nullopt;
    }
    std::string_view rest = *note;
    const std::size_t lead = rest.find(fitLead);
    if (lead != std::string_view::npos) {
        rest.remove_prefix(lead + fitLead.size());
    }
    // The first sentences in a row that give values; those behind them speak of other things.
    std::string fit;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(sentenceEnd), rest.size());
        const std::string_view each = UnicodeText::trimmed(rest.substr(0, end));
        rest.remove_prefix(std::min(end + sentenceEnd.size(), rest.size()));
        if (each.find('=') != std::string_view::npos) {
            fit += (fit.empty() ? "" : sentenceEnd);
            fit += each;
        } else if (!fit.empty() || lead != std::string_view::npos) {
            break;
        }
    }
    if (fit.ends_with('.')) {
        fit.pop_back();
    }
    return fit.empty() ? std::nullopt : std::optional(std::move(fit));
}

}  // namespace sorvane::SEMDiagramBackfill
