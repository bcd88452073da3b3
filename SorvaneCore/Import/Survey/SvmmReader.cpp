#include "SorvaneCore/Import/Survey/SvmmReader.h"

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/Survey/PackageTable.h"

namespace sorvane::SvmmReader {

namespace {

using namespace PackageJson;

std::string externalFileNote(const std::string& path) {
    return "This survey package references an external data file (" + path +
           "). Import that file to continue.";
}

std::string noDataNote() {
    return "This survey package has no embedded data. Import the matching data file to continue.";
}

bool isRecognized(const Object& root) {
    const std::string app = UnicodeText::lowerCased(textMember(root, "app").value_or(""));
    return app.find("sorvane") != std::string::npos || member(root, "project") ||
           member(root, "data");
}

/// The objects in which a package may keep something, the likeliest first.
std::vector<Object> places(const Object& root) {
    std::vector<Object> places;
    if (const std::optional<Object> data = objectMember(root, "data")) {
        places.push_back(*data);
        for (const std::string_view key : {"table", "dataset"}) {
            if (const std::optional<Object> inner = objectMember(*data, key)) {
                places.push_back(*inner);
            }
        }
    }
    places.push_back(root);
    if (const std::optional<Object> project = objectMember(root, "project")) {
        places.push_back(*project);
    }
    return places;
}

std::optional<PackageTable> embeddedTable(const Object& root, std::size_t packageBytes) {
    for (const Object& place : places(root)) {
        if (std::optional<PackageTable> table = extractRows(place, packageBytes)) {
            return table;
        }
    }
    const std::optional<Array> rows = arrayMember(root, "data");
    return rows ? extractRows(*rows, packageBytes) : std::nullopt;
}

std::map<std::string, std::string> rolesOf(const Object& root) {
    for (const Object& place : places(root)) {
        if (const std::optional<Object> roles = objectMember(place, "roles")) {
            return textsOf(*roles);
        }
    }
    return {};
}

std::string missingTableNote(const Object& root) {
    for (const Object& place : places(root)) {
        if (const std::optional<std::string> path = textMember(place, "source_path")) {
            return externalFileNote(*path);
        }
    }
    return noDataNote();
}

}  // namespace

std::optional<SvmmPackage> read(std::string_view bytes) {
    const std::optional<Document> document = Document::parse(bytes);
    if (!document || !isRecognized(document->root())) {
        return std::nullopt;
    }
    const Object root = document->root();
    SvmmPackage package;
    if (const std::optional<Object> project = objectMember(root, "project")) {
        package.title = textMember(*project, "title").value_or("");
    }
    package.roles = rolesOf(root);
    std::optional<PackageTable> table = embeddedTable(root, bytes.size());
    if (!table || table->headers().empty()) {
        package.notes.push_back(missingTableNote(root));
        return package;
    }
    std::optional<TextTable> rows = table->finish();
    if (!rows) {
        return std::nullopt;
    }
    package.headers = table->headers();
    package.rows = *std::move(rows);
    return package;
}

}  // namespace sorvane::SvmmReader
