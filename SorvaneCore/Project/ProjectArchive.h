#pragma once

#include <boost/describe/class.hpp>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Project/WholeFile.h"
#include "SorvaneCore/SorvaneEngine.h"

namespace sorvane {

/// What the user decided about one variable.
struct ProjectVariableState {
    std::string name{};
    std::optional<std::string> label{};
    VariableKind assignedType = VariableKind::status;
    std::optional<std::string> assignedConstruct{};
    std::optional<ScaleRange> scaleRange{};
    bool includeInReliability = false;
    bool includeInDescriptives = false;
    bool isReverseCoded = false;
    bool isUnreliableFlagged = false;

    bool operator==(const ProjectVariableState&) const = default;

    static ProjectVariableState of(const DataVariable& variable,
                                   bool isReverseCoded,
                                   bool isUnreliableFlagged);
};
BOOST_DESCRIBE_STRUCT(ProjectVariableState,
                      (),
                      (name,
                       label,
                       assignedType,
                       assignedConstruct,
                       scaleRange,
                       includeInReliability,
                       includeInDescriptives,
                       isReverseCoded,
                       isUnreliableFlagged))

/// What a project keeps beside its table.
struct ProjectContents {
    std::vector<std::string> transformationLog{};
    std::map<std::string, std::string> settings{};
    std::set<std::string> reverseCodedNames{};
    std::set<std::string> unreliableItemNames{};
    std::chrono::sys_seconds createdAt{};
    std::chrono::sys_seconds modifiedAt{};
};

/// A file that is no project, or a project that cannot be written; `what()` is the sentence that
/// the user reads.
class ProjectArchiveError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A whole project as its file holds it: the table, the user's decisions, the log and a map of
/// settings. The layout is told in docs/formats/svp.md.
struct ProjectArchive {
    static constexpr std::string_view fileExtension = "svp";
    /// Read, and no longer written.
    static constexpr std::string_view legacyFileExtension = "sorvane";
    static constexpr std::string_view currentSchemaVersion = "1.0";
    /// A file that claims more is refused, as it would fill the memory.
    static constexpr std::size_t mostColumns = 250'000;

    std::string schemaVersion{currentSchemaVersion};
    std::string engineVersion{SorvaneEngine::version};
    std::string datasetName{};
    std::vector<std::string> headers{};
    TextTable rows{};
    /// One per variable, in column order.
    std::vector<ProjectVariableState> variableStates{};
    std::vector<std::string> transformationLog{};
    std::map<std::string, std::string> settings{};
    std::chrono::sys_seconds createdAt{};
    std::chrono::sys_seconds modifiedAt{};

    bool operator==(const ProjectArchive&) const = default;

    /// The archive of a table and what is kept with it; costs a pointer per column.
    static ProjectArchive of(const ImportedDataset& dataset, ProjectContents contents);

    /// Hands over the bytes of the file piece by piece.
    ///
    /// Method     indented JSON in UTF-8 with sorted keys; the table is never held as a whole
    /// Failure    more columns than can be read again -> ProjectArchiveError
    /// Cost       O(cells) time, O(1) memory beside the settings
    static void encode(const ProjectArchive& archive, const TakeBytes& take);
    static std::string encode(const ProjectArchive& archive);

    /// The archive that these bytes hold.
    ///
    /// Method     keys may come in any order and unknown ones are skipped; a short row is padded
    ///            with empty cells, a long one cut; the schema version is not looked at
    /// Failure    no JSON, a key that is missing, given twice or of another form, a table that is
    ///            beyond all measure -> ProjectArchiveError
    /// Cost       O(bytes) time; the memory of the table and a few megabytes
    static ProjectArchive decode(std::string_view bytes);
    /// The archive of a file, read piece by piece.
    ///
    /// Failure    as `decode`; a file that cannot be read -> ProjectArchiveError with what the
    ///            system says
    static ProjectArchive read(const std::filesystem::path& file);
};
BOOST_DESCRIBE_STRUCT(ProjectArchive,
                      (),
                      (schemaVersion,
                       engineVersion,
                       datasetName,
                       headers,
                       rows,
                       variableStates,
                       transformationLog,
                       settings,
                       createdAt,
                       modifiedAt))

}  // namespace sorvane
