#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

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

/// Adds a warning to each of the columns and a caution that names them all.
void add(const DoubtfulColumns& doubtful, ImportedDataset& dataset);

/// What a variable is warned of by a caution of the kind.
std::string warning(ImportCautionKind kind);

/// Lets the cautions name a column by its new name.
void rename(ImportReadinessMetadata& metadata, std::string_view from, const std::string& to);
/// Takes a column that is no more out of the cautions, and a caution without columns away.
void forget(ImportReadinessMetadata& metadata, std::string_view column);

}  // namespace sorvane::ImportCautions
