#include "scene_editor/core/HelpTopics.h"

#include "scene_editor/resource.h"

#include <gtest/gtest.h>

TEST(HelpTopics, Pane_HasATopicOfItsOwn)
{
    EXPECT_EQ(editor::help_topic_of(IDC_SCENE), 0x50000U + IDC_SCENE);
    EXPECT_EQ(editor::help_topic_of(IDC_ENTRIES), 0x50000U + IDC_ENTRIES);
}

TEST(HelpTopics, FieldWithoutOne_LeavesItToItsPane)
{
    EXPECT_EQ(editor::help_topic_of(IDC_PROPERTY_NAME), 0U);
    EXPECT_EQ(editor::help_topic_of(0), 0U);
}
