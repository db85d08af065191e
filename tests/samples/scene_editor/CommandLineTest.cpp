#include "scene_editor/core/CommandLine.h"

#include <gtest/gtest.h>

TEST(CommandLine, FirstWord_EndsAtABlankOutsideQuotationMarks)
{
    EXPECT_EQ(editor::first_word("  a.odb b.odb"), "a.odb");
    EXPECT_EQ(editor::first_word("\"C:\\My Files\\a.odb\" b"), "C:\\My Files\\a.odb");
    EXPECT_EQ(editor::first_word("C:\\\"My Files\"\\a.odb"), "C:\\My Files\\a.odb");
}

TEST(CommandLine, NoWord_IsEmpty)
{
    EXPECT_EQ(editor::first_word(""), "");
    EXPECT_EQ(editor::first_word(" \t "), "");
    EXPECT_EQ(editor::first_word("\"\""), "");
}

TEST(CommandLine, QuotationMarkThatIsNotClosed_TakesTheRest)
{
    EXPECT_EQ(editor::first_word("\"a b"), "a b");
}

TEST(CommandLine, FilePart_LiesBehindTheLastSlashOfEitherKind)
{
    EXPECT_EQ(editor::file_part("C:\\a/b\\c.odb"), "c.odb");
    EXPECT_EQ(editor::file_part("c.odb"), "c.odb");
    EXPECT_EQ(editor::file_part("folder/"), "");
}

TEST(CommandLine, NamedFiles_AreALibraryAndAScene)
{
    const editor::NamedFiles both = editor::named_files(" \"C:\\my files\\a.scene\"  b.odb c.odb");
    EXPECT_EQ(both.library, "b.odb");
    EXPECT_EQ(both.scene, "C:\\my files\\a.scene");
    const editor::NamedFiles none = editor::named_files("  ");
    EXPECT_EQ(none.library, "");
    EXPECT_EQ(none.scene, "");
}

TEST(CommandLine, SceneFile_EndsInSceneInAnyCase)
{
    EXPECT_TRUE(editor::is_scene_file("C:\\a.SCENE"));
    EXPECT_TRUE(editor::is_scene_file(".scene"));
    EXPECT_FALSE(editor::is_scene_file("scene"));
    EXPECT_FALSE(editor::is_scene_file("a.scene.odb"));
}
