#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Models/LatentClassModel.h"
#include "SorvaneMac/Screens/LatentClass/LatentClassFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

/// The indicators of a mixture: numbers for profiles, categories for classes.
struct LatentIndicators {
    LatentMixtureMode mode = LatentMixtureMode::profile;
    std::vector<std::string> names;
    /// Either these or the texts, one per name.
    std::vector<NumericColumn> numbers;
    std::vector<std::shared_ptr<const TextColumn>> texts;

    /// Takes the share of the fit that is done, on the thread that fits.
    using Progress = std::function<void(double)>;

    /// The fit of so many classes; absent where no such fit can be asked for.
    std::optional<LatentClassResult> fit(std::int64_t classCount, Progress progress) const;

    /// The columns that can be indicators.
    static VariableLists::List candidates(const ImportedDataset& dataset, LatentMixtureMode mode);
    /// The chosen ones among them, in column order. Columns that only the other mode takes stay
    /// checked, and are left out.
    static std::vector<std::string> chosen(const ImportedDataset& dataset,
                                           const LatentClassFields& fields,
                                           LatentMixtureMode mode);
    static LatentIndicators of(const ImportedDataset& dataset,
                               const LatentClassFields& fields,
                               LatentMixtureMode mode);
    /// What is missing of the indicators: columns that have gone, a second one.
    static std::optional<Gate> gate(const ImportedDataset& dataset,
                                    const LatentClassFields& fields,
                                    LatentMixtureMode mode);
    /// The gate of too few complete cases for so many classes.
    static std::optional<Gate> tooFewCases(const ImportedDataset& dataset,
                                           const LatentClassFields& fields,
                                           LatentMixtureMode mode);
};

}  // namespace sorvane
