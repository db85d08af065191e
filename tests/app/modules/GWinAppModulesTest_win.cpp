#include "app/GWinApp.h"
#include "app/ModuleFile.h"
#include "app/ModuleSearch.h"
#include "foundation/GObjectFileFormat.h"
#include "foundation/fpstream.h"
#include "tests/app/modules/PluginFiles.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

using Names = ModuleTree::Names;

/// A host whose message boxes fail the test.
class ModuleHost : public GWinApp {
public:
    int DoMessageBox(LPCTSTR text, UINT, UINT) override
    {
        ADD_FAILURE() << "a message box: " << text;
        return IDOK;
    }
};

std::wstring path_variable()
{
    const wchar_t* const value = ::_wgetenv(L"PATH");
    return value == nullptr ? std::wstring() : std::wstring(value);
}

/// The same from the system, whose loader looks there.
std::wstring path_of_system()
{
    std::wstring value(32'768, L'\0');
    value.resize(::GetEnvironmentVariableW(L"PATH", value.data(), 32'768));
    return value;
}

/// A host that lies in the tree's "bin", by a file that stands for its program.
class GWinAppModules : public testing::Test {
protected:
    void SetUp() override
    {
        tree_.copy(ZMR_PLUGIN_SUPPORT, "bin/program.bin");
        ASSERT_TRUE(program_.load(tree_.file("bin/program.bin"), 0));
        ASSERT_TRUE(host_.InitInstance());
        host_.m_hInstance = program_.module;
    }
    void TearDown() override
    {
        if (!ended_)
            host_.ExitInstance();
        fpbase::SetRedirectionFile(nullptr);
        ::_wputenv((L"PATH=" + former_path_).c_str());
    }
    void end_host()
    {
        host_.ExitInstance();
        ended_ = true;
    }
    /// Where the host's modules come from, in their order.
    [[nodiscard]] Names loaded() const
    {
        Names names;
        for (long index = 0; index < host_.external_modules().count; ++index)
            names.push_back(
                tree_.inside(zmr::file_of_module(host_.external_modules().at(index)->module)));
        return names;
    }
    [[nodiscard]] std::wstring listed(const Names& names) const
    {
        std::wstring text;
        for (const std::string& name : names) {
            const std::string directory(tree_.file(name).view());
            text += std::wstring(directory.begin(), directory.end()) + L';';
        }
        for (wchar_t& unit : text)
            unit = unit == L'/' ? L'\\' : unit;
        return text;
    }
    [[nodiscard]] static std::wstring with_backslashes(std::wstring text)
    {
        for (wchar_t& unit : text)
            unit = unit == L'/' ? L'\\' : unit;
        return text;
    }

    PluginTree tree_;
    GDynamicLinkLibrary program_{nullptr, 0};
    std::wstring former_path_ = path_variable();
    ModuleHost host_;
    bool ended_ = false;
};

}  // namespace

TEST_F(GWinAppModules, Found_InTheProgramsDirectoryBelowItAndWhereRedirected)
{
    tree_.copy_first("bin/a.plugin");
    tree_.copy_first("bin/plug/b.plugin");
    tree_.copy_first("bin/plug/deep/c.plugin");
    tree_.copy_first("bin/other/d.plugin");
    tree_.copy_first("elsewhere/e.plugin");
    auto redirection = std::make_unique<RedirectionFile>();
    tree_.redirect(*redirection, "*.plugin", {"elsewhere"});
    tree_.redirect(*redirection, "*.tga", {"bin/other"});
    fpbase::SetRedirectionFile(std::move(redirection));
    host_.load_external_modules("*.plugin", "plug");

    EXPECT_EQ(loaded(), (Names{"bin/a.plugin", "bin/plug/b.plugin", "bin/plug/deep/c.plugin",
                               "elsewhere/e.plugin"}));
}

TEST_F(GWinAppModules, NullSubdirectory_OnlyTheOwnAndTheRedirectedDirectories)
{
    tree_.copy_first("bin/a.plugin");
    tree_.copy_first("bin/plug/b.plugin");
    tree_.copy_first("elsewhere/c.plugin");
    tree_.copy_first("elsewhere/below/d.plugin");
    auto redirection = std::make_unique<RedirectionFile>();
    tree_.redirect(*redirection, "*.plugin", {"elsewhere"});
    fpbase::SetRedirectionFile(std::move(redirection));
    host_.load_external_modules("*.plugin", nullptr);

    EXPECT_EQ(loaded(), (Names{"bin/a.plugin", "elsewhere/c.plugin"}));
}

TEST_F(GWinAppModules, FileOfOneNameInTwoDirectories_IsLoadedTwice)
{
    tree_.copy_first("bin/same.plugin");
    tree_.copy_first("bin/plug/same.plugin");
    host_.load_external_modules("same.plugin", "plug");

    EXPECT_EQ(loaded(), (Names{"bin/same.plugin", "bin/plug/same.plugin"}));
    const TGCollection<GDynamicLinkLibrary>& modules = host_.external_modules();
    ASSERT_EQ(modules.count, 2);
    EXPECT_NE(modules.at(0)->module, modules.at(1)->module);
}

TEST_F(GWinAppModules, TextNamedLikeALibrary_IsLeftOutWithoutABox)
{
    tree_.make_file("bin/a text.dll");
    std::ofstream(tree_.path_of("bin/empty.dll"));
    tree_.copy_first("bin/whole.dll");
    tree_.copy_first("bin/z cut.dll");
    std::filesystem::resize_file(tree_.path_of("bin/z cut.dll"), 20'000);
    const DWORD mode = ::GetThreadErrorMode();
    host_.load_external_modules("*.dll", nullptr);

    EXPECT_EQ(loaded(), Names{"bin/whole.dll"});
    EXPECT_EQ(::GetThreadErrorMode(), mode);
}

TEST_F(GWinAppModules, WhatAModuleNeeds_IsFoundInAnotherDirectoryOfTheList)
{
    tree_.copy(ZMR_SECOND_PLUGIN, "bin/second.plugin");
    tree_.copy(ZMR_PLUGIN_SUPPORT, "bin/plug/deep/plugin_support.dll");
    Modules without_path(0, 4, 1);
    zmr::ModuleSearch(tree_.file("bin"), "plug", nullptr, "*.plugin")
        .load("*.plugin", without_path);
    ASSERT_EQ(without_path.count, 0) << "it is found beside the program, which proves nothing";
    host_.load_external_modules("*.plugin", "plug");

    EXPECT_EQ(loaded(), Names{"bin/second.plugin"});
    const HMODULE support = ::GetModuleHandleA("plugin_support.dll");
    ASSERT_NE(support, nullptr);
    EXPECT_EQ(tree_.inside(zmr::file_of_module(reinterpret_cast<HINSTANCE>(support))),
              "bin/plug/deep/plugin_support.dll");
    end_host();
    EXPECT_EQ(::GetModuleHandleA("plugin_support.dll"), nullptr);
}

TEST_F(GWinAppModules, WhatAModuleNeedsNowhere_LeavesItOut)
{
    tree_.copy(ZMR_SECOND_PLUGIN, "bin/second.plugin");
    host_.load_external_modules("*.plugin", "plug");

    EXPECT_EQ(loaded(), Names{});
    EXPECT_FALSE(class_is_there("SecondThing"));
}

TEST_F(GWinAppModules, Path_GetsTheDirectoriesInFrontAndGrowsWithEachCall)
{
    tree_.make_directory("bin/plug/deep");
    const std::wstring added = listed({"bin", "bin/plug", "bin/plug/deep"});
    host_.load_external_modules("*.plugin", "plug");
    EXPECT_EQ(with_backslashes(path_variable()), added + with_backslashes(former_path_));
    host_.load_external_modules("*.plugin", nullptr);

    EXPECT_EQ(with_backslashes(path_variable()),
              listed({"bin"}) + added + with_backslashes(former_path_));
    EXPECT_EQ(path_of_system(), path_variable());
}

TEST_F(GWinAppModules, PathThatIsNotSet_BecomesJustTheDirectories)
{
    ::_wputenv(L"PATH=");
    ASSERT_EQ(::_wgetenv(L"PATH"), nullptr);
    tree_.make_directory("bin/plug");
    host_.load_external_modules("*.plugin", "plug");

    EXPECT_EQ(with_backslashes(path_variable()), listed({"bin", "bin/plug"}));
}

TEST_F(GWinAppModules, PathOutsideAscii_IsKept)
{
    ::_wputenv(L"PATH=C:\\\u00FC\u20AC");
    tree_.make_directory("bin/\xC3\xA4");
    host_.load_external_modules("*.plugin", "\xC3\xA4");

    EXPECT_TRUE(path_variable().ends_with(L"\\\u00E4;C:\\\u00FC\u20AC"));
    EXPECT_EQ(path_of_system(), path_variable());
}

TEST_F(GWinAppModules, EndOfTheHost_UnloadsFromTheLastToTheFirst)
{
    tree_.copy_first("bin/a.plugin");
    tree_.copy_first("bin/b.plugin");
    tree_.copy(ZMR_SCENE_MODULE, "bin/c.plugin");
    const auto formats = GObjectFileFormat::All().size();
    host_.load_external_modules("*.plugin", nullptr);
    const TGCollection<GDynamicLinkLibrary>& modules = host_.external_modules();
    ASSERT_EQ(modules.count, 3);
    EXPECT_TRUE(class_is_there("SceneMesh"));
    static_cast<void>(take_ended());
    function_of<TellEnd>(*modules.at(0), "plugin_tell_end")(note_end);
    function_of<TellEnd>(*modules.at(1), "plugin_tell_end")(note_end);
    std::vector<HINSTANCE> handles;
    for (long index = 0; index < modules.count; ++index)
        handles.push_back(modules.at(index)->module);
    end_host();

    EXPECT_EQ(modules.count, 0);
    EXPECT_EQ(take_ended(), (Names{"first", "first"}));
    EXPECT_FALSE(class_is_there("FirstThing"));
    EXPECT_FALSE(class_is_there("SceneMesh"));
    EXPECT_EQ(GObjectFileFormat::All().size(), formats);
    for (const HINSTANCE handle : handles)
        EXPECT_EQ(zmr::module_of_address(handle), nullptr) << "it is out of memory";
}

TEST_F(GWinAppModules, ObjectThatWaitsToBeFreed_GoesBeforeItsModule)
{
    tree_.copy_first("bin/a.plugin");
    host_.load_external_modules("*.plugin", nullptr);
    ASSERT_EQ(host_.external_modules().count, 1);
    GStreamable::destroy(function_of<MakeThing>(*host_.external_modules().at(0), "plugin_make")());
    end_host();

    EXPECT_FALSE(class_is_there("FirstThing"));
    EXPECT_EQ(GDynamicLinkLibrary::UnloadWaiting(), 0);
}

TEST_F(GWinAppModules, ObjectThatOutlivesTheHost_KeepsItsModule)
{
    tree_.copy_first("bin/a.plugin");
    host_.load_external_modules("*.plugin", nullptr);
    ASSERT_EQ(host_.external_modules().count, 1);
    GStreamable* made = function_of<MakeThing>(*host_.external_modules().at(0), "plugin_make")();
    end_host();

    EXPECT_EQ(GDynamicLinkLibrary::UnloadWaiting(), 1);
    EXPECT_STREQ(made->getClassName(), "FirstThing");
    GStreamable::destroy(made);
    EXPECT_EQ(GDynamicLinkLibrary::UnloadWaiting(), 0);
    EXPECT_FALSE(class_is_there("FirstThing"));
}

TEST_F(GWinAppModules, LiveWindow_KeepsItsModule)
{
    constexpr UINT kAsk = WM_APP + 1;
    tree_.copy(ZMR_WINDOW_PLUGIN, "bin/window.plugin");
    host_.load_external_modules("*.plugin", nullptr);
    ASSERT_EQ(host_.external_modules().count, 1);
    const auto open =
        function_of<HWND (*)()>(*host_.external_modules().at(0), "plugin_open_window");
    const void* const code = reinterpret_cast<const void*>(open);
    const HWND window = open();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(::SendMessage(window, kAsk, 0, 0), 4711);
    end_host();

    EXPECT_EQ(GDynamicLinkLibrary::UnloadWaiting(), 1);
    EXPECT_EQ(::SendMessage(window, kAsk, 0, 0), 4711) << "its code is still there";
    EXPECT_TRUE(::DestroyWindow(window));
    EXPECT_EQ(GDynamicLinkLibrary::UnloadWaiting(), 0);
    EXPECT_EQ(zmr::module_of_address(code), nullptr);
}
