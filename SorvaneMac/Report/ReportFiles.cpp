#include "SorvaneMac/Report/ReportFiles.h"

#include <boost/describe/enumerators.hpp>
#include <boost/mp11/algorithm.hpp>

#include "SorvaneCore/Project/WholeFile.h"
#include "SorvaneMac/Report/DocxReportExporter.h"
#include "SorvaneMac/Report/MarkdownReportExporter.h"
#include "SorvaneMac/Report/PDFReportExporter.h"

namespace sorvane {

std::string_view rawValue(ReportFormat format) {
    switch (format) {
        case ReportFormat::md:
            return "md";
        case ReportFormat::rtf:
            return "rtf";
        case ReportFormat::docx:
            return "docx";
        case ReportFormat::pdf:
            return "pdf";
        case ReportFormat::draft:
            break;
    }
    return "briselreport";
}

std::optional<ReportFormat> reportFormat(std::string_view extension) {
    std::optional<ReportFormat> found;
    boost::mp11::mp_for_each<boost::describe::describe_enumerators<ReportFormat>>([&](auto each) {
        if (rawValue(each.value) == extension) {
            found = each.value;
        }
    });
    return found;
}

std::string suggestedFileName(ReportFormat format) {
    std::string name = "Sorvane-Report.";
    name += rawValue(format);
    return name;
}

std::vector<std::uint8_t> reportBytes(const RichDocument& document, ReportFormat format) {
    switch (format) {
        case ReportFormat::md: {
            const std::string text = MarkdownReportExporter::markdown(document);
            return {text.begin(), text.end()};
        }
        case ReportFormat::docx:
            return DocxReportExporter::package(document);
        case ReportFormat::pdf:
            return PDFReportExporter::pdf(document);
        case ReportFormat::rtf:
        case ReportFormat::draft:
            break;
    }
    return encode(document);
}

std::optional<std::string> writeReport(const RichDocument& document,
                                       ReportFormat format,
                                       const std::filesystem::path& file) {
    const std::optional<std::string> reason = replaceFile(file, reportBytes(document, format));
    return reason ? std::optional("Save failed: " + *reason + ".") : std::nullopt;
}

}  // namespace sorvane
