#include "app/ModuleFile.h"
#include "app/ModuleSearch.h"
#include "foundation/GClassDictionary.h"
#include "foundation/GObjectFileFormat.h"
#include "tests/app/modules/LoadedLibrary.h"
#include "tests/app/modules/PluginFiles.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

// Real plug-ins in real directories. The program and they stand on the one dynamic library, as a
// host and its modules do.

namespace {

using Names = ModuleTree::Names;

/// The files that the modules came from, as they stand in the tree.
Names files_of(const PluginTree& tree, const Modules& modules)
{
    Names names;
    for (long index = 0; index < modules.count; ++index)
        names.push_back(tree.inside(zmr::file_of_module(modules.at(index)->module)));
    return names;
}

Modules no_modules()
{
    return {0, 4, 1};
}

/// How many formats know a file of that name.
int formats_for(const char* file)
{
    int count = 0;
    for (GObjectFileFormat* format : GObjectFileFormat::All())
        count += format->read_object_class_name(file).is_empty() ? 0 : 1;
    return count;
}

}  // namespace

TEST(ExternalModules, FoundByMask_InTheOwnDirectoryBelowItAndWhereRedirected)
{
    PluginTree tree;
    tree.copy_first("bin/a.plugin");
    tree.copy_first("bin/not.module");
    tree.copy_first("bin/plug/b.plugin");
    tree.copy_first("bin/plug/deep/c.plugin");
    tree.copy_first("bin/other/d.plugin");
    tree.copy_second("elsewhere/e.plugin");
    tree.copy_second("elsewhere/below/f.plugin");
    RedirectionFile redirection;
    tree.redirect(redirection, "*.plugin", {"elsewhere"});
    Modules modules = no_modules();
    zmr::ModuleSearch(tree.file("bin"), "plug", &redirection, "*.plugin").load("*.plugin", modules);

    EXPECT_EQ(files_of(tree, modules), (Names{"bin/a.plugin", "bin/plug/b.plugin",
                                              "bin/plug/deep/c.plugin", "elsewhere/e.plugin"}));
    EXPECT_TRUE(class_is_there("FirstThing"));
    EXPECT_TRUE(class_is_there("SecondThing"));
}

TEST(ExternalModules, NullSubdirectory_NothingBelowTheOwnDirectoryIsLoaded)
{
    PluginTree tree;
    tree.copy_first("bin/below/a.plugin");
    Modules modules = no_modules();
    zmr::ModuleSearch(tree.file("bin"), nullptr, nullptr, "*.plugin").load("*.plugin", modules);

    EXPECT_EQ(modules.count, 0);
    EXPECT_FALSE(class_is_there("FirstThing"));
}

TEST(ExternalModules, WhatIsNoLibrary_IsLeftOutAndTheRestIsLoaded)
{
    PluginTree tree;
    tree.make_file("bin/a text.plugin");
    std::ofstream(tree.path_of("bin/empty.plugin"));
    tree.copy_first("bin/whole.plugin");
    tree.copy_first("bin/z cut.plugin");
    std::filesystem::resize_file(tree.path_of("bin/z cut.plugin"), 1000);
    Modules modules = no_modules();
    zmr::ModuleSearch(tree.file("bin"), nullptr, nullptr, "*.plugin").load("*.plugin", modules);

    EXPECT_EQ(files_of(tree, modules), Names{"bin/whole.plugin"});
}

TEST(ExternalModules, NameInTwoDirectories_IsLoadedTwiceOnceForEachFile)
{
    PluginTree tree;
    tree.copy_first("bin/same.plugin");
    tree.copy_first("bin/plug/same.plugin");
    Modules modules = no_modules();
    zmr::ModuleSearch(tree.file("bin"), "plug", nullptr, "*.plugin").load("*.plugin", modules);

    EXPECT_EQ(files_of(tree, modules), (Names{"bin/same.plugin", "bin/plug/same.plugin"}));
    ASSERT_EQ(modules.count, 2);
    EXPECT_NE(modules.at(0)->module, modules.at(1)->module);
    EXPECT_EQ(formats_for("x.first"), 2);
    EXPECT_EQ(GMetaClass::FindByName("FirstThing")->get_module(), modules.at(1)->module)
        << "of two classes of one name the later one answers";
    modules.at_free(1);
    ASSERT_TRUE(class_is_there("FirstThing"));
    EXPECT_EQ(GMetaClass::FindByName("FirstThing")->get_module(), modules.at(0)->module);
    modules.empty();
    EXPECT_FALSE(class_is_there("FirstThing"));
}

TEST(ExternalModules, Unloading_GoesFromTheLastToTheFirst)
{
    PluginTree tree;
    tree.copy_first("a.plugin");
    tree.copy_second("b.plugin");
    tree.copy_first("c.plugin");
    Modules modules = no_modules();
    zmr::ModuleSearch search;
    search.add_directory(tree.file(""));
    search.load("*.plugin", modules);
    ASSERT_EQ(modules.count, 3);
    static_cast<void>(take_ended());
    for (long index = 0; index < 3; ++index)
        function_of<TellEnd>(*modules.at(index), "plugin_tell_end")(note_end);
    modules.empty();

    EXPECT_EQ(take_ended(), (Names{"first", "second", "first"}));
}

TEST(ExternalModules, Unloaded_NothingOfThemIsLeft)
{
    PluginTree tree;
    tree.copy_first("a.plugin");
    tree.copy_second("b.plugin");
    GClassDictionary before;
    GStreamable::metaclass_.getDerivedClasses(before, true);
    const auto formats = GObjectFileFormat::All().size();
    Modules modules = no_modules();
    zmr::ModuleSearch search;
    search.add_directory(tree.file(""));
    search.load("*.plugin", modules);
    ASSERT_EQ(modules.count, 2);
    EXPECT_EQ(GObjectFileFormat::All().size(), formats + 1);
    const void* const first_code = modules.at(0)->find_symbol("plugin_make");
    const void* const second_code = modules.at(1)->find_symbol("plugin_make");
    ASSERT_NE(zmr::module_of_address(first_code), nullptr);
    for (long index = 0; index < 2; ++index)
        GStreamable::destroy(function_of<MakeThing>(*modules.at(index), "plugin_make")());
    modules.empty();

    EXPECT_EQ(zmr::module_of_address(first_code), nullptr) << "its code is out of memory";
    EXPECT_EQ(zmr::module_of_address(second_code), nullptr);
    EXPECT_EQ(GDynamicLinkLibrary::UnloadWaiting(), 0);
    EXPECT_EQ(GObjectFileFormat::All().size(), formats);
    EXPECT_EQ(GObjectFileFormat::Find("x.first"), nullptr);
    EXPECT_FALSE(class_is_there("FirstThing"));
    EXPECT_FALSE(class_is_there("SecondThing"));
    GClassDictionary after;
    GStreamable::metaclass_.getDerivedClasses(after, true);
    ASSERT_EQ(after.count, before.count);
    for (long index = 0; index < after.count; ++index)
        EXPECT_EQ(after.at(index), before.at(index));
}

TEST(ExternalModules, WhileAnObjectLives_TheModuleStaysAndGoesWithTheNextUnloading)
{
    PluginTree tree;
    tree.copy_first("a.plugin");
    Modules modules = no_modules();
    zmr::ModuleSearch search;
    search.add_directory(tree.file(""));
    search.load("*.plugin", modules);
    ASSERT_EQ(modules.count, 1);
    const void* const code = modules.at(0)->find_symbol("plugin_make");
    auto* built = zmr::class_cast<GStreamable>(GMetaClass::FindByName("FirstThing")->buildObject());
    GStreamable* made = function_of<MakeThing>(*modules.at(0), "plugin_make")();
    modules.empty();

    EXPECT_EQ(GDynamicLinkLibrary::UnloadWaiting(), 1);
    EXPECT_TRUE(class_is_there("FirstThing"));
    EXPECT_STREQ(made->getClassName(), "FirstThing");
    GStreamable* copied = built->clone(true);
    EXPECT_STREQ(copied->getClassName(), "FirstThing");
    GStreamable::destroy(built);
    GStreamable::destroy(made);
    EXPECT_EQ(GDynamicLinkLibrary::UnloadWaiting(), 1) << "the copy lives";
    GStreamable::destroy(copied);
    EXPECT_TRUE(class_is_there("FirstThing")) << "not while its destructor may still be running";
    EXPECT_EQ(GDynamicLinkLibrary::UnloadWaiting(), 0);
    EXPECT_FALSE(class_is_there("FirstThing"));
    EXPECT_EQ(zmr::module_of_address(code), nullptr);
}

TEST(ExternalModules, LoadedAgainWhileAnObjectLives_IsTheSameModule)
{
    PluginTree tree;
    tree.copy_first("a.plugin");
    auto library = std::make_unique<GDynamicLinkLibrary>(tree.file("a.plugin"), 0);
    ASSERT_NE(library->module, nullptr) << GDynamicLinkLibrary::LastError().text;
    const HINSTANCE former = library->module;
    GStreamable* made = function_of<MakeThing>(*library, "plugin_make")();
    library.reset();
    library = std::make_unique<GDynamicLinkLibrary>(tree.file("a.plugin"), 0);

    EXPECT_EQ(library->module, former);
    EXPECT_EQ(made->getMetaClass(), GMetaClass::FindByName("FirstThing"));
    GStreamable::destroy(made);
    library.reset();
    EXPECT_FALSE(class_is_there("FirstThing"));
}

TEST(ExternalModules, SceneModule_BringsItsClassesAndFormatsAndTakesThemAway)
{
    PluginTree tree;
    tree.copy(ZMR_SCENE_MODULE, "plug/scene_module.plugin");
    tree.copy_first("plug/a.plugin");
    ASSERT_FALSE(class_is_there("SceneMesh"));
    const auto formats = GObjectFileFormat::All().size();
    Modules modules = no_modules();
    zmr::ModuleSearch(tree.file(""), "plug", nullptr, "scene*.plugin")
        .load("scene*.plugin", modules);
    ASSERT_EQ(modules.count, 1);
    EXPECT_TRUE(class_is_there("SceneMesh"));
    EXPECT_TRUE(class_is_there("SceneMaterial"));
    EXPECT_EQ(GObjectFileFormat::All().size(), formats + 3);
    const void* const code = GMetaClass::FindByName("SceneMesh");
    modules.empty();

    EXPECT_FALSE(class_is_there("SceneMesh"));
    EXPECT_FALSE(class_is_there("SceneMaterial"));
    EXPECT_EQ(GObjectFileFormat::All().size(), formats);
    EXPECT_EQ(zmr::module_of_address(code), nullptr);
}

TEST(ExternalModules, LoadedAndUnloadedAgainAndAgain_NothingGrows)
{
    PluginTree tree;
    tree.copy_first("a.plugin");
    tree.copy_second("b.plugin");
    tree.copy(ZMR_SCENE_MODULE, "c.plugin");
    tree.make_file("d.plugin");
    zmr::ModuleSearch search;
    search.add_directory(tree.file(""));

    EXPECT_EQ(what_grows(
                  [&search] {
                      Modules modules = no_modules();
                      search.load("*.plugin", modules);
                      for (long index = 0; index < 2; ++index) {
                          const auto make =
                              function_of<MakeThing>(*modules.at(index), "plugin_make");
                          GStreamable::destroy(make());
                      }
                  },
                  20),
              "");
}

TEST(FileOfModule, ProgramAndModule_AreTheirFiles)
{
    PluginTree tree;
    tree.copy_first("\xC3\xBC/a.plugin");
    const GDynamicLinkLibrary library(tree.file("\xC3\xBC/a.plugin"), 0);
    ASSERT_NE(library.module, nullptr);
    const GFile program = zmr::file_of_module(nullptr);

    EXPECT_EQ(tree.inside(zmr::file_of_module(library.module)), "\xC3\xBC/a.plugin");
    EXPECT_FALSE(program.isRelativePath());
    EXPECT_TRUE(program.exists());
    EXPECT_TRUE(program.get_name().view().starts_with("test_app_modules")) << program.text;
}
