#include <QByteArray>

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/Uuid.h"
#include "SorvaneMac/Platform/ResourceDirectory.h"
#include "SorvaneMac/Platform/SupportDirectory.h"

namespace sorvane {
namespace {

/// Sets a variable of the environment for as long as it lives.
class Variable {
public:
    Variable(const char* name, const QByteArray& value) : name_(name), before_(qgetenv(name)) {
        qputenv(name, value);
    }
    ~Variable() { before_.isNull() ? qunsetenv(name_) : qputenv(name_, before_); }

private:
    const char* name_;
    QByteArray before_;
};

TEST(ResourceDirectory, IsTheChosenOneWhereThatExists) {
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / Uuid::fresh().text();
    std::filesystem::create_directory(folder);
    const auto chosen = [](const std::filesystem::path& value) {
        const Variable variable("SORVANE_RESOURCES", value.string().c_str());
        return resourceDirectory();
    };
    EXPECT_EQ(chosen(folder), folder);
    std::filesystem::remove(folder);
    for (const std::filesystem::path& none : {std::filesystem::path(), folder}) {
        EXPECT_TRUE(std::filesystem::exists(chosen(none) / "SampleEIStudy.csv")) << none;
    }
}

TEST(SupportDirectory, LiesWhereTheDesktopKeepsDataOfPrograms) {
    const Variable variable("XDG_DATA_HOME", "/home/größe/data");
    EXPECT_EQ(supportDirectory(), std::filesystem::path("/home/größe/data/SorvaneBrisel"));
}

}  // namespace
}  // namespace sorvane
