#include "SorvaneCore/Import/Archive/ZipArchiveReader.h"

#include <gtest/gtest.h>

#include "SorvaneCore/Import/Archive/ZipError.h"
#include "Tests/Import/ZipBuilder.h"

namespace sorvane {
namespace {

std::string archiveSentence(const std::string& bytes) {
    try {
        ZipArchiveReader::extract(bytes);
    } catch (const ZipError& error) {
        return error.what();
    }
    return "unpacked";
}

const std::string damaged = "The archive is damaged. ";
const std::string unsupported = "The archive uses an unsupported feature. ";
const std::string notAZipFile = "The file is not a ZIP archive.";

TEST(ZipArchiveReader, UnpacksStoredAndDeflatedEntries) {
    // "aaaa…" of 40 letters, deflated.
    const std::string deflated("\x4B\x4C\x24\x0E\x00\x00", 6);
    const std::string archive =
        zipArchive({{.name = "a//b/./c", .bytes = "first"},
                    {.name = "folder/"},
                    {.name = "../out/"},
                    {.name = "a/b/c", .bytes = "second"},
                    {.name = "d", .bytes = deflated, .method = 8, .declaredSize = 40},
                    {.name = "e", .bytes = "junk", .method = 8}},
                   std::string(1000, 'x'));
    const UnpackedFolder folder = ZipArchiveReader::extract(archive);
    EXPECT_EQ(*folder.file("a/b/c"), "second");
    EXPECT_EQ(*folder.file("d"), std::string(40, 'a'));
    EXPECT_EQ(*folder.file("e"), "") << "declared empty";
    EXPECT_EQ(folder.file("folder"), nullptr);
    EXPECT_EQ(ZipArchiveReader::entryData(archive, "a//b/./c"), "first");
    EXPECT_EQ(ZipArchiveReader::entryData(archive, "A"), std::nullopt);
    for (const std::uint32_t size : {39U, 41U, 4'000'000'000U}) {
        EXPECT_EQ(archiveSentence(zipArchive(
                      {{.name = "d", .bytes = deflated, .method = 8, .declaredSize = size}})),
                  damaged + "Could not decompress d.");
    }
}

TEST(ZipArchiveReader, RefusesTooMuchBeforeItUnpacksAny) {
    // Many names for the same bytes, with sizes that no stream could hold.
    std::string archive = zipArchive({{.name = "a", .bytes = std::string(1 << 20, 'x')}});
    const std::size_t directory = archive.find("PK\1\2");
    std::string record = archive.substr(directory, 47);
    record.replace(24, 4, "\xFE\xFF\xFF\xFF");
    const auto withRecords = [&](std::uint16_t count) {
        std::string bytes = archive.substr(0, directory);
        for (std::uint16_t i = 0; i < count; ++i) {
            bytes += record;
        }
        std::string end = archive.substr(directory + 47);
        return bytes + end.replace(10, 2, bytesOf(count));
    };
    EXPECT_EQ(archiveSentence(withRecords(1)), "unpacked");
    EXPECT_EQ(archiveSentence(withRecords(300)), unsupported +
                                                     "It unpacks to far more data than a "
                                                     "workbook can hold.");
}

TEST(ZipArchiveReader, NamesThatLeadOutStopTheExtraction) {
    for (const std::string name : {"/etc/x", "../x", "a/../x", "a/..", "..", ".", "./", "//x"}) {
        const std::string expected =
            name == "./" ? "unpacked" : damaged + "Entry name escapes the archive: " + name;
        EXPECT_EQ(archiveSentence(zipArchive({{.name = name, .bytes = "x"}})), expected);
    }
    EXPECT_EQ(archiveSentence(zipArchive({{.name = "a..b/..c"}})), "unpacked");
    EXPECT_EQ(archiveSentence(zipArchive({{.name = "xl"}, {.name = "xl/workbook.xml"}})),
              damaged + "A file stands where a folder for xl/workbook.xml belongs.");
    EXPECT_EQ(archiveSentence(zipArchive({{.name = "xl/workbook.xml"}, {.name = "xl"}})),
              damaged + "A folder stands where the file xl belongs.");
    EXPECT_EQ(archiveSentence(zipArchive({{.name = std::string(300, 'n')}})),
              damaged + "The name of an entry is too long for a file.");
}

TEST(ZipArchiveReader, RefusesWhatItCannotRead) {
    const std::string archive = zipArchive({{.name = "a.txt", .bytes = "text"}});
    const std::size_t directory = archive.find("PK\1\2");
    const std::size_t end = archive.find("PK\5\6");
    const auto with = [&archive](std::size_t position, const std::string& bytes) {
        std::string changed = archive;
        return archiveSentence(changed.replace(position, bytes.size(), bytes));
    };
    const std::string zip64 = unsupported + "ZIP64 archives are not supported.";
    const std::string malformed = damaged + "Central directory record is malformed.";
    EXPECT_EQ(with(end + 10, "\xFF\xFF"), zip64);
    EXPECT_EQ(with(end + 16, "\xFF\xFF\xFF\xFF"), zip64);
    for (const std::size_t field : {20U, 24U, 42U}) {
        EXPECT_EQ(with(directory + field, "\xFF\xFF\xFF\xFF"), zip64);
    }
    EXPECT_EQ(with(end + 10, std::string("\x02\x00", 2)), malformed);
    EXPECT_EQ(with(end + 16, std::string("\xFF\xFF\xFF\x7F", 4)), malformed);
    EXPECT_EQ(with(directory + 28, "\xFF"), damaged + "Central directory record is truncated.");
    EXPECT_EQ(with(0, "PX"), damaged + "Local file header is malformed for a.txt.");
    EXPECT_EQ(with(26, "\xFF\xFF"), damaged + "Entry data is truncated for a.txt.");
    EXPECT_EQ(with(directory + 10, "\x0C"), unsupported + "Compression method 12 in a.txt.");
    EXPECT_EQ(archiveSentence(""), notAZipFile);
    for (std::size_t size = 0; size < archive.size(); ++size) {
        EXPECT_EQ(archiveSentence(archive.substr(0, size)), notAZipFile);
    }
    for (std::size_t position = 0; position < archive.size(); ++position) {
        for (const char value : {'\0', '\1', '\x7F', '\xFF'}) {
            with(position, std::string(1, value));
        }
    }
}

}  // namespace
}  // namespace sorvane
