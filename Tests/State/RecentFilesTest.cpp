#include "SorvaneMac/State/RecentFiles.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/Uuid.h"
#include "SorvaneCore/Project/RecordJson.h"

namespace sorvane {
namespace {

TEST(RecentFiles, KeepsTheEightLastOnceEachAndShowsThoseThatExist) {
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / Uuid::fresh().text();
    std::filesystem::create_directories(folder);
    SessionDefaults defaults;
    for (int number = 1; number <= 9; ++number) {
        const std::filesystem::path file = folder / (std::to_string(number) + ".csv");
        std::ofstream(file) << "a";
        RecentFiles::remember(defaults, "list", file);
    }
    RecentFiles::remember(defaults, "list", folder / "." / "5.csv");
    std::filesystem::remove(folder / "8.csv");
    std::vector<std::string> names;
    for (const std::filesystem::path& file : RecentFiles::existing(defaults, "list")) {
        names.push_back(file.filename().string());
    }
    EXPECT_EQ(names, (std::vector<std::string>{"5.csv", "9.csv", "7.csv", "6.csv", "4.csv", "3.csv",
                                               "2.csv"}));
    EXPECT_EQ(defaults.value("list").size(), 8U) << "a file that is gone keeps its place";
    std::filesystem::remove_all(folder);
}

TEST(RecentFiles, TakesWhatIsNoListForAnEmptyOne) {
    SessionDefaults defaults;
    defaults.set("list", Json{{"a", 1}});
    EXPECT_TRUE(RecentFiles::existing(defaults, "list").empty());
    RecentFiles::remember(defaults, "list", "/nowhere/x.csv");
    EXPECT_EQ(defaults.value("list"), Json::array({"/nowhere/x.csv"}));
}

}  // namespace
}  // namespace sorvane
