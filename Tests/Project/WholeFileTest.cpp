#include "SorvaneCore/Project/WholeFile.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/Uuid.h"

namespace sorvane {
namespace {

class WholeFile : public testing::Test {
protected:
    WholeFile() { std::filesystem::create_directory(folder_); }
    ~WholeFile() override { std::filesystem::remove_all(folder_); }

    static std::optional<std::string> replaceWith(const std::filesystem::path& file,
                                                  std::string_view text) {
        return replaceFile(file, std::vector<std::uint8_t>(text.begin(), text.end()));
    }
    static std::string contents(const std::filesystem::path& file) {
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }
    std::size_t entries() const {
        const std::filesystem::directory_iterator all(folder_);
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / Uuid::fresh().text();
};

TEST_F(WholeFile, ReplacesContentsAndKeepsPermissions) {
    const std::filesystem::path file = folder_ / "report.md";
    EXPECT_EQ(replaceWith(file, "first"), std::nullopt);
    std::filesystem::permissions(
        file, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(replaceWith(file, "second, longer"), std::nullopt);
    EXPECT_EQ(contents(file), "second, longer");
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    EXPECT_EQ(entries(), 1U);
}

TEST_F(WholeFile, FollowsALink) {
    const std::filesystem::path file = folder_ / "report.md";
    const std::filesystem::path link = folder_ / "link.md";
    replaceWith(file, "old");
    std::filesystem::create_symlink(file, link);
    EXPECT_EQ(replaceWith(link, "new"), std::nullopt);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(contents(file), "new");
}

TEST_F(WholeFile, SaysWhyItFailedAndLeavesNothingBehind) {
    EXPECT_EQ(replaceWith(folder_ / "gone" / "report.md", "x"), "No such file or directory");
    EXPECT_EQ(replaceWith(folder_ / std::string(300, 'n'), "x"), "File name too long");
    std::filesystem::create_directory(folder_ / "taken.md");
    EXPECT_EQ(replaceWith(folder_ / "taken.md", "x"), "Is a directory");
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0666), 0);
    EXPECT_EQ(replaceWith(folder_ / "pipe", "x"), "Operation not supported");
    EXPECT_EQ(entries(), 2U);
}

TEST_F(WholeFile, SweepsWhatKilledReplacementsLeft) {
    const auto now = std::filesystem::file_time_type::clock::now();
    for (const auto& [name, age] : {std::pair(".sorvane-old", 25), std::pair(".sorvane-new", 1),
                                    std::pair("autosave.svp", 25)}) {
        replaceWith(folder_ / name, "x");
        std::filesystem::last_write_time(folder_ / name, now - std::chrono::hours(age));
    }
    removeAbandonedReplacements(folder_);
    EXPECT_EQ(entries(), 2U);
    EXPECT_FALSE(std::filesystem::exists(folder_ / ".sorvane-old"));
    removeAbandonedReplacements(folder_ / "gone");
}

}  // namespace
}  // namespace sorvane
