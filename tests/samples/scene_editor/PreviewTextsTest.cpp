#include "scene_editor/core/PreviewTexts.h"

#include <gtest/gtest.h>

using namespace editor;

TEST(PreviewTexts, LinesHoldWhatIsKnownAndNothingElse)
{
    PreviewLoaded preview;
    preview.name = "ring";
    EXPECT_EQ(preview_texts(preview).title, "ring");
    EXPECT_EQ(preview_texts(preview).caption, "");
    EXPECT_EQ(preview_texts(preview).more, "");

    preview.class_name = "SceneMesh";
    preview.caption = "4 x 4";
    preview.holding = "In the file ring.lob";
    preview.pictures = {"front"};
    preview.movie = "a name";
    preview.description = "Of silver";
    const PreviewTexts texts = preview_texts(preview);
    EXPECT_EQ(texts.caption, "SceneMesh, 4 x 4");
    EXPECT_EQ(texts.more, "In the file ring.lob, 1 picture, movie");
    EXPECT_EQ(texts.description, "Of silver");
}

TEST(PreviewTexts, ShownPicture_IsNamedWithItsNumber)
{
    PreviewLoaded preview;
    preview.pictures = {"back", "front"};
    EXPECT_EQ(preview_texts(preview).more, "2 pictures");
    preview.picture_name = "front";
    EXPECT_EQ(preview_texts(preview).more, "picture 2 of 2: front");
    preview.picture_name = "gone";
    EXPECT_EQ(preview_texts(preview).more, "2 pictures");
}

TEST(PreviewTexts, PictureAfter_GoesRoundByTheObject)
{
    PreviewLoaded preview;
    EXPECT_EQ(picture_after(preview, 1), "");
    preview.pictures = {"back", "front"};
    EXPECT_EQ(picture_after(preview, 1), "back");
    EXPECT_EQ(picture_after(preview, -1), "front");
    preview.picture_name = "front";
    EXPECT_EQ(picture_after(preview, 1), "");
    EXPECT_EQ(picture_after(preview, -1), "back");
    preview.picture_name = "gone";
    EXPECT_EQ(picture_after(preview, 1), "back");
}

TEST(PreviewTexts, LineBreaks_GoToTheControlsAndBack)
{
    EXPECT_EQ(with_control_breaks("a\nb\r\nc"), "a\r\nb\r\nc");
    EXPECT_EQ(without_control_breaks("a\r\nb"), "a\nb");
    EXPECT_EQ(in_one_line("a\r\nb\nc"), "a b c");
}
