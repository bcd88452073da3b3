#include <cmath>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Prepare/DerivedValueFormatter.h"
#include "SorvaneMac/State/LogText.h"
#include "SorvaneMac/State/StudioState.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

std::optional<double> boundIn(const std::string& text) {
    const std::optional<double> number = NumberText::parse(UnicodeText::trimmed(text));
    return number && std::isfinite(*number) ? number : std::nullopt;
}

/// "1 and 5", "the minimum 1", "the maximum 5".
std::string boundsText(std::optional<double> lower, std::optional<double> upper) {
    using LogText::number;
    if (lower && upper) {
        return number(*lower) + " and " + number(*upper);
    }
    return lower ? "the minimum " + number(*lower) : "the maximum " + number(*upper);
}

}  // namespace

void StudioState::clSeed() {
    const VariableLists::List numeric = VariableLists::numericVariables(dataset());
    if (cleaning.clVar->isBlank() && !numeric.empty()) {
        cleaning.clVar.set({numeric.front()->name});
    }
}

std::optional<double> StudioState::clLowerBound() const {
    return boundIn(cleaning.clLower.get());
}

std::optional<double> StudioState::clUpperBound() const {
    return boundIn(cleaning.clUpper.get());
}

OutOfRangeReport StudioState::clOutOfRangeReport() const {
    return DataCleaning::outOfRange(dataset().numericColumn(cleaning.clVar->name), clLowerBound(),
                                    clUpperBound());
}

OutlierReport StudioState::clOutlierReport() const {
    return DataCleaning::outliers(dataset().numericColumn(cleaning.clVar->name),
                                  cleaning.clOutlierMethod.get());
}

std::optional<std::string> StudioState::clampLacks() const {
    if (!dataset().columnIndex(cleaning.clVar->name)) {
        return "Choose a variable.";
    }
    if (!clLowerBound() && !clUpperBound()) {
        return "Set a lower and/or upper bound first.";
    }
    return std::nullopt;
}

bool StudioState::clApplyClampToMissing() {
    if (const std::optional<std::string> lacking = clampLacks()) {
        cleaning.clMessage.set(*lacking);
        return false;
    }
    const std::string source = cleaning.clVar->name;
    const std::string bounds = boundsText(clLowerBound(), clUpperBound());
    const std::string name = uniqueHeaderName(source + " Cleaned");
    const auto values = DataCleaning::clampToMissing(dataset().numericColumn(source),
                                                     clLowerBound(), clUpperBound());
    appendDerivedVariable(
        {.name = name,
         .values = DerivedValueFormatter::column(values),
         .assignedType = dataset().variable(source)->assignedType,
         .warning = "Out-of-range values (outside " + bounds + ") set to missing from " + source});
    log("Cleaned " + source + " into " + name + ": out-of-range (outside " + bounds +
        ") set to missing.");
    cleaning.clMessage.set(name + " was added with out-of-range values set to missing.");
    refreshAnalysisDefaults();
    return true;
}

}  // namespace sorvane
