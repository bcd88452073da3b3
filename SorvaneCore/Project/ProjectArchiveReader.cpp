#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <system_error>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/ArchiveRows.h"
#include "SorvaneCore/Project/JsonStream.h"
#include "SorvaneCore/Project/ProjectArchive.h"
#include "SorvaneCore/Project/RecordJson.h"

namespace sorvane {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

Json parsed(const std::string& text) {
    try {
        return Json::parse(text);
    } catch (const Json::exception&) {
        // Its own words are a parser's: "[json.exception.parse_error.101] ...".
        throw RecordJsonError("is no JSON that can be read");
    }
}

/// Takes the members of the outermost object, in whatever order they come.
class ArchiveReader {
public:
    explicit ArchiveReader(JsonStream& stream) : stream_(stream) {}

    ProjectArchive read() {
        stream_.take('{');
        if (!stream_.takeIf('}')) {
            do {
                readMember();
            } while (stream_.takeIf(','));
            stream_.take('}');
        }
        if (!stream_.isAtEnd()) {
            stream_.fail();
        }
        checkAllMet();
        if (skippedRows_) {
            stream_.goTo(*skippedRows_);
            readRows();
        }
        return std::move(archive_);
    }

private:
    static constexpr std::array<std::string_view, 10> keys = {
        "schemaVersion",  "engineVersion",     "datasetName", "headers",   "rows",
        "variableStates", "transformationLog", "settings",    "createdAt", "modifiedAt"};

    void readMember() {
        std::string quoted;
        if (stream_.peek() != '"') {
            stream_.fail();
        }
        stream_.appendValue(quoted);
        const auto key = fromJson<std::string>(parsed(quoted));
        stream_.take(':');
        if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
            stream_.skipValue();
            return;
        }
        if (has(key)) {
            throw RecordJsonError("is given twice").within(key);
        }
        met_.push_back(key);
        readKnown(key);
    }

    void readKnown(const std::string& key) {
        if (key == "rows") {
            // The number of columns may come only later.
            if (has("headers")) {
                readRows();
            } else {
                skippedRows_ = stream_.place();
                stream_.skipValue();
            }
        } else if (key == "headers") {
            take(key, archive_.headers);
            if (archive_.headers.size() > ProjectArchive::mostColumns) {
                throw ProjectArchiveError(
                    "it names more than " +
                    NumberText::integer(std::int64_t{ProjectArchive::mostColumns}) + " variables");
            }
        } else if (key == "variableStates") {
            take(key, archive_.variableStates);
        } else if (key == "transformationLog") {
            take(key, archive_.transformationLog);
        } else if (key == "settings") {
            take(key, archive_.settings);
        } else if (key == "createdAt" || key == "modifiedAt") {
            take(key, key == "createdAt" ? archive_.createdAt : archive_.modifiedAt);
        } else {
            take(key, key == "schemaVersion"   ? archive_.schemaVersion
                      : key == "engineVersion" ? archive_.engineVersion
                                               : archive_.datasetName);
        }
    }

    void readRows() { archive_.rows = ArchiveRows::read(stream_, archive_.headers.size()); }

    template <typename T>
    void take(const std::string& key, T& field) {
        std::string text;
        stream_.appendValue(text);
        try {
            field = fromJson<T>(parsed(text));
        } catch (const RecordJsonError& error) {
            throw error.within(key);
        }
    }

    bool has(std::string_view key) const {
        return std::find(met_.begin(), met_.end(), key) != met_.end();
    }
    void checkAllMet() const {
        for (const std::string_view key : keys) {
            if (!has(key)) {
                throw RecordJsonError("is missing").within(std::string(key));
            }
        }
    }

    JsonStream& stream_;
    ProjectArchive archive_;
    std::vector<std::string> met_;
    std::optional<std::size_t> skippedRows_;
};

ProjectArchive archiveOf(JsonSource source) {
    try {
        JsonStream stream(std::move(source));
        if (stream.startsWith(byteOrderMark)) {
            stream.goTo(byteOrderMark.size());
        }
        return ArchiveReader(stream).read();
    } catch (const std::system_error&) {
        throw;
    } catch (const std::runtime_error& error) {
        throw ProjectArchiveError(std::string("This is no project, or it is damaged: ") +
                                  error.what() + ".");
    }
}

}  // namespace

ProjectArchive ProjectArchive::decode(std::string_view bytes) {
    return archiveOf(JsonSource::of(bytes));
}

ProjectArchive ProjectArchive::read(const std::filesystem::path& file) {
    try {
        return archiveOf(JsonSource::of(file));
    } catch (const std::system_error& error) {
        throw ProjectArchiveError(error.code().message() + ".");
    }
}

}  // namespace sorvane
