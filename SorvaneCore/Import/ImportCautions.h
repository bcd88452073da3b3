#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "SorvaneCore/Dataset/ImportedDataset.h"

/// What a person must know before analysing columns that a file's format left in doubt.
namespace sorvane::ImportCautions {

/// Indexes of columns.
struct DoubtfulColumns {
    /// With a number that no data hold.
    std::span<const std::size_t> implausible;
    /// Shifted, or with blank texts, if references to long texts have another width than read.
    std::span<const std::size_t> shifted;
};

/// The warning that a variable with implausible numbers bears.
std::string implausibleWarning();

/// Adds a warning to each of the columns and a caution that names them all.
void add(const DoubtfulColumns& doubtful, ImportedDataset& dataset);

}  // namespace sorvane::ImportCautions
