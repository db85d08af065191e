#include "FreshSettings.h"

#include "platform/Windows.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

constexpr const char* kVariable = "SCENE_EDITOR_SETTINGS";

std::string g_file;

/// Programs that a test starts have the variables of the test.
class FreshSettings : public testing::EmptyTestEventListener {
public:
    void OnTestStart(const testing::TestInfo&) override
    {
        folder_.emplace();
        g_file = folder_->file("editor.ini");
        ::SetEnvironmentVariableA(kVariable, g_file.c_str());
    }
    void OnTestEnd(const testing::TestInfo&) override
    {
        ::SetEnvironmentVariableA(kVariable, nullptr);
        folder_.reset();
    }

private:
    std::optional<TemporaryFolder> folder_;
};

const bool g_is_listening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new FreshSettings);  // gtest's own now
    return true;
}();

}  // namespace

std::string settings_file()
{
    return g_is_listening ? g_file : std::string();
}

RegistryManager settings_of_the_program()
{
    RegistryManager manager;
    manager.Initialize(nullptr, settings_file().c_str());
    return manager;
}
