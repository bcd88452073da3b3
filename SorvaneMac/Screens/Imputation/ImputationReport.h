#pragma once

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/Screens/Imputation/ImputationFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// A multiple imputation as tables, charts and a finding; and what there is to impute.
namespace sorvane::ImputationReport {

/// Input      `chart`: the variable whose charts are shown; blank for the first
void show(const ImputationRun& run, const std::string& chart, ScreenContent& content);

/// The missing values of what is chosen.
void showMissing(const ImportedDataset& dataset,
                 const ImputationFields& fields,
                 ScreenContent& content);

}  // namespace sorvane::ImputationReport
