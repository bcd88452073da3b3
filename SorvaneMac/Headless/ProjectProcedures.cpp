#include "SorvaneCore/Project/DatasetJson.h"
#include "SorvaneCore/Project/MethodFile.h"
#include "SorvaneCore/Project/ProjectArchive.h"
#include "SorvaneCore/Project/SorvanePackage.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

ProjectArchive decodeArchive(const std::string& bytes) {
    try {
        return ProjectArchive::decode(bytes);
    } catch (const ProjectArchiveError& error) {
        throw CallError(error.what());
    }
}

std::vector<std::string> createFolderPackage(const std::string& at,
                                             const SorvaneProjectManifest& manifest) {
    if (const auto failure = SorvanePackageLayout::createFolderPackage(at, manifest)) {
        throw CallError("The package could not be made: " + *failure + ".");
    }
    return SorvanePackageLayout::requiredEntries();
}

}  // namespace

std::vector<Procedure> projectProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return {
        procedure("ProjectArchive.decode", &decodeArchive, Value<std::string>{"bytes"}),
        procedure("MethodFile.defaultFilename", &MethodFile::defaultFilename,
                  Value<MethodFile>{"methodFile"}),
        procedure("SorvanePackageLayout.requiredEntries", &SorvanePackageLayout::requiredEntries),
        procedure("SorvanePackageLayout.createFolderPackage", &createFolderPackage,
                  Value<std::string>{"at"}, Value<SorvaneProjectManifest>{"manifest"}),
    };
}

}  // namespace sorvane
