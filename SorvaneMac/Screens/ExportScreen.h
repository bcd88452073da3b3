#pragma once

#include <boost/describe/enum.hpp>
#include <cstdint>
#include <string_view>
#include <vector>

#include "SorvaneMac/Report/RichDocument.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// The files that a report is exported to.
enum class ReportFormat { pdf, docx, rtf, markdown };
BOOST_DESCRIBE_ENUM(ReportFormat, pdf, docx, rtf, markdown)

/// What leaves the program: the report in its formats.
class ExportScreen final : public Screen {
public:
    explicit ExportScreen(StudioState& state) : state_(state) {}

    StudioScreen id() const override { return StudioScreen::export_; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override { return std::nullopt; }

    /// The document as it was last edited; assembled now where that was not yet done.
    ///
    /// Failure    nothing is staged and nothing was assembled -> absent
    std::optional<RichDocument> document() const;
    /// The name that a save panel proposes.
    static std::string_view suggestedName(ReportFormat format);
    /// The file of a document; PDF needs a QGuiApplication for its fonts.
    static std::vector<std::uint8_t> file(const RichDocument& document, ReportFormat format);

private:
    StudioState& state_;
};

}  // namespace sorvane
