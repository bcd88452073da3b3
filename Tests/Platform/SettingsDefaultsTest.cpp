#include "SorvaneMac/Platform/SettingsDefaults.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/Uuid.h"

namespace sorvane {
namespace {

class SettingsDefaultsTest : public testing::Test {
protected:
    ~SettingsDefaultsTest() override { std::filesystem::remove(file_); }

    std::unique_ptr<UserDefaults> opened() { return settingsDefaults(file_.string()); }
    std::string text() {
        std::ifstream stream(file_, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    const std::filesystem::path file_ =
        std::filesystem::temp_directory_path() / (Uuid::fresh().text() + ".ini");
};

TEST_F(SettingsDefaultsTest, GiveBackInTheNextSessionWhatWasKept) {
    const struct {
        const char* key;
        const char* value;
    } kept[] = {
        {"text", R"("größe; \"quoted\", 100% \\ \n next")"},
        {"number", "1.25"},
        {"flag", "false"},
        {"list", R"(["/data/a, b.csv","/data/c=d.csv"])"},
        {"record", R"({"width":1280,"inspectorShows":true})"},
        {"empty", R"("")"},
        {"a/b key", "[]"},
    };
    {
        const std::unique_ptr<UserDefaults> defaults = opened();
        for (const auto& each : kept) {
            defaults->set(each.key, "former");
            defaults->set(each.key, Json::parse(each.value));
        }
    }
    const std::unique_ptr<UserDefaults> defaults = opened();
    for (const auto& each : kept) {
        EXPECT_EQ(defaults->value(each.key), Json::parse(each.value)) << each.key;
    }
    EXPECT_TRUE(defaults->value("other").is_null());
}

TEST_F(SettingsDefaultsTest, TakeADamagedFileForOneWithoutTheKey) {
    opened()->set("scale", 1.5);
    const std::string whole = text();
    ASSERT_NE(whole.find("scale"), std::string::npos);
    for (const std::string& damaged : {std::string("scale=1.5.5\n"), std::string("scale\n[[["),
                                       std::string("[General]\nscale={\"width\":\n"),
                                       std::string(64, '\0'), std::string("\xFF\xFE=\xFF")}) {
        std::ofstream(file_, std::ios::binary) << damaged;
        const std::unique_ptr<UserDefaults> defaults = opened();
        EXPECT_TRUE(defaults->value("scale").is_null()) << damaged;
        defaults->set("scale", 2);
        EXPECT_EQ(defaults->value("scale"), 2) << damaged;
    }
}

TEST_F(SettingsDefaultsTest, KeepATextThatIsNotUnicode) {
    opened()->set("file", "/data/\xE9t\xE9.csv");
    EXPECT_TRUE(opened()->value("file").is_string());
}

}  // namespace
}  // namespace sorvane
