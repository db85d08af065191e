#include "scene_editor/core/SceneDocument.h"

#include "LoadedScene.h"
#include "tests/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using testing::HasSubstr;

namespace {

/// The real file system, of which one operation fails.
class FailingFiles : public zmr::FileSystemDevice {
public:
    enum class Step : std::uint8_t { None, Open, Rename };
    Step fails = Step::None;

    std::unique_ptr<zmr::FileDevice> open(const std::string& name, zmr::FileAccess access,
                                          zmr::FileCreate create, zmr::FileShare share,
                                          zmr::FileError& error) override
    {
        if (fails == Step::Open) {
            error = {zmr::FileErrorKind::DiskFull, 0};
            return nullptr;
        }
        return Real().open(name, access, create, share, error);
    }
    zmr::FileError rename(const std::string& from, const std::string& to) override
    {
        if (fails == Step::Rename)
            return {zmr::FileErrorKind::AccessDenied, 0};
        return Real().rename(from, to);
    }
    zmr::FileError remove(const std::string& name) override { return Real().remove(name); }
    zmr::FileError sync_directory_of(const std::string& name) override
    {
        return Real().sync_directory_of(name);
    }
};

std::string content_of(const std::string& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void write_file(const std::string& file, const std::string& content)
{
    std::ofstream(file, std::ios::binary) << content;
}

}  // namespace

TEST(SceneDocument, WithoutTheModule_HasNoScene)
{
    editor::SceneDocument document([] {});

    EXPECT_FALSE(document.begin_new());
    EXPECT_EQ(document.root(), nullptr);
    EXPECT_EQ(document.current(), nullptr);
    EXPECT_FALSE(document.is_changed());
    EXPECT_TRUE(document.save("nothing.scene").has_value());
}

TEST(SceneDocument, NewScene_IsUnchangedUntilSomethingIs)
{
    LoadedScene loaded;
    EXPECT_FALSE(loaded.document.is_changed());
    EXPECT_EQ(loaded.document.name(), "Untitled");

    GResponder* const ring = loaded.add("ring", 10, 20);

    EXPECT_TRUE(loaded.document.is_changed());
    EXPECT_GT(loaded.changes, 0);
    EXPECT_EQ(loaded.document.current(), ring);
}

TEST(SceneDocument, SaveAndLoad_GiveTheSameScene)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("two.scene");
    LoadedScene loaded;
    loaded.add("left", -100, 5)->set_palette_entry(scene::kSurfaceColor, {1, 2, 3});
    loaded.add("right", 100, -5);

    EXPECT_EQ(loaded.document.save(file), std::nullopt);
    EXPECT_FALSE(loaded.document.is_changed());
    EXPECT_EQ(loaded.document.name(), "two.scene");
    EXPECT_FALSE(std::filesystem::exists(file + ".new"));
    EXPECT_TRUE(loaded.document.begin_new());
    EXPECT_EQ(loaded.document.root()->getCount(), 0);
    loaded.changes = 0;
    EXPECT_EQ(loaded.document.load(file), std::nullopt);

    EXPECT_EQ(loaded.changes, 1);
    EXPECT_FALSE(loaded.document.is_changed());
    GResponder* const left = loaded.document.root()->find_sub_object("left");
    ASSERT_NE(left, nullptr);
    EXPECT_EQ(LoadedScene::item(left).place().x, -100);
    EXPECT_EQ(left->get_pal(scene::kSurfaceColor), (RGB_Color{1, 2, 3}));
    EXPECT_TRUE(left->is_visible());
    EXPECT_STREQ(loaded.document.current()->get_label(), "right");
    LoadedScene::item(left).touch();
    EXPECT_TRUE(loaded.document.is_changed());
    EXPECT_EQ(loaded.changes, 2) << "the new scene is listened to";
}

TEST(SceneDocument, FileThatIsNoScene_LeavesTheSceneAndSaysWhy)
{
    const TemporaryFolder folder;
    LoadedScene loaded;
    GResponder* const ring = loaded.add("ring", 0, 0);
    const std::string good = folder.file("good.scene");
    ASSERT_EQ(loaded.document.save(good), std::nullopt);
    const std::string whole = content_of(good);
    const std::string bad = folder.file("bad.scene");

    EXPECT_THAT(loaded.document.load(folder.file("none.scene")).value_or(""),
                HasSubstr("none.scene"));
    write_file(bad, "just a text");
    EXPECT_THAT(loaded.document.load(bad).value_or(""), HasSubstr("it is no scene"));
    write_file(bad, whole + "x");
    EXPECT_THAT(loaded.document.load(bad).value_or(""), HasSubstr("goes on"));
    write_file(bad, "");
    EXPECT_TRUE(loaded.document.load(bad).has_value());
    for (std::size_t length = 8; length < whole.size(); length += 97) {
        write_file(bad, whole.substr(0, length));
        EXPECT_TRUE(loaded.document.load(bad).has_value()) << length;
    }

    EXPECT_EQ(loaded.document.current(), ring);
    EXPECT_EQ(loaded.document.file(), good);
}

TEST(SceneDocument, UnknownClass_IsNamed)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("a.scene");
    LoadedScene loaded;
    loaded.add("ring", 0, 0);
    ASSERT_EQ(loaded.document.save(file), std::nullopt);
    std::string content = content_of(file);
    const std::size_t at = content.find("SceneMesh");
    ASSERT_NE(at, std::string::npos);
    content[at + 5] = 'X';
    write_file(file, content);

    EXPECT_THAT(loaded.document.load(file).value_or(""), HasSubstr("SceneXesh"));
}

TEST(SceneDocument, FailingWrite_LeavesTheOldFileAndTheChangedMark)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("kept.scene");
    LoadedScene loaded;
    FailingFiles files;
    editor::SceneDocument document([] {}, files);
    ASSERT_TRUE(document.begin_new());
    ASSERT_EQ(document.save(file), std::nullopt);
    const std::string before = content_of(file);
    document.root()->set_palette_entry(scene::kSurfaceColor, {9, 9, 9});
    const GObjectFileFormat* const format = GObjectFileFormat::Find(ZMR_TEST_DATA "/ring.obj");
    ASSERT_NE(document.scene()->add_model(format->read_object(ZMR_TEST_DATA "/ring.obj"), "a"),
              nullptr);

    files.fails = FailingFiles::Step::Open;
    EXPECT_THAT(document.save(file).value_or(""), HasSubstr("no space"));
    files.fails = FailingFiles::Step::Rename;
    EXPECT_THAT(document.save(file).value_or(""), HasSubstr("kept.scene"));

    EXPECT_EQ(content_of(file), before);
    EXPECT_FALSE(std::filesystem::exists(file + ".new"));
    EXPECT_TRUE(document.is_changed());
    files.fails = FailingFiles::Step::None;
    EXPECT_EQ(document.save(file), std::nullopt);
    EXPECT_NE(content_of(file), before);
}
