#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Models/LatentClassModel.h"
#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"

/// The classes of a mixture as tables, text and a profile plot.
namespace sorvane::MixtureReport {

/// "Latent profile analysis" or "Latent class analysis".
std::string_view title(LatentMixtureMode mode);

/// The classes with their sizes, what they look like on the indicators, and the fit.
std::vector<ReportTable> tables(const LatentClassResult& result);

/// Means in standard scores, or probabilities of answers: lines where each indicator has two
/// categories, else coloured cells.
Chart profilePlot(const LatentClassResult& result);

std::string sentence(const LatentClassResult& result);

}  // namespace sorvane::MixtureReport
