#pragma once

#include <cstddef>
#include <string>

#include "SorvaneCore/Models/Multilevel/LinkedOutcome.h"
#include "SorvaneCore/Models/Multilevel/MultilevelData.h"
#include "SorvaneCore/Models/Multilevel/MultilevelResult.h"
#include "SorvaneCore/Models/Multilevel/MultilevelRows.h"

namespace sorvane {

enum class LinkedStructure { intercept, slope, twoFactors };

/// One model of counts or shares that was asked for, and what is said about it but for the numbers.
struct LinkedTask {
    LinkedFamily family = LinkedFamily::logistic;
    LinkedStructure structure = LinkedStructure::intercept;
    const MultilevelOptions& options;
    std::size_t totalRows = 0;
    /// Cluster by cluster.
    MultilevelRows rows{};

    /// Whether every outcome is one of the family's.
    static bool isCoded(const MultilevelRows& rows, LinkedFamily family);
    /// Why there can be no fit; empty where there may be one.
    std::string obstacle() const;
    /// A result without numbers.
    MultilevelResult started() const;
    MultilevelResult blocked(std::string why) const;
    /// The readiness of a finished fit.
    void setReadiness(MultilevelResult& result) const;
};

}  // namespace sorvane
