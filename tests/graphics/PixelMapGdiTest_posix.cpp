#include "TestPictures.h"

#include "platform/CNotSupportedException.h"

#include <gtest/gtest.h>

TEST(PixelMapGdi, Stretch_ThrowsWhereThereIsNothingToDrawOn)
{
    const PixelMap map = test_map(AbstractImage::Format24);
    bool thrown = false;
    try {
        map.stretch(nullptr, 0, 0, 1, 1, 0, 0, 1, 1);
    } catch (CNotSupportedException* failure) {
        thrown = true;
        failure->Delete();
    }

    EXPECT_TRUE(thrown);
}

TEST(PixelMapGdi, CreateHandle_IsNull)
{
    PixelMap map = test_map(AbstractImage::Format24);

    EXPECT_EQ(map.create_handle(), nullptr);
}
