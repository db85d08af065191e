#include "TestPictures.h"
#include "graphics/GIconMaker.h"
#include "graphics/PixelMapTools.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

TEST(PictureThreads, OneMap_IsWrittenReadAndShrunkInAllThreads)
{
    const TemporaryFolder folder;
    const PixelMap map = test_map(AbstractImage::Format24);
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (const char* const extension : {"png", "bmp", "tga", "png"})
        threads.emplace_back([&, extension, number = threads.size()] {
            const std::string file = folder.file(std::to_string(number) + "." + extension);
            for (int i = 0; i < 30; ++i) {
                const bool written = PixelMapTools::SaveToFile(&map, file.c_str(), true);
                const std::unique_ptr<PixelMap> read(PixelMapTools::LoadFromFile(file.c_str()));
                const std::unique_ptr<PixelMap> icon(GIconMaker::Make(map, 4));
                const std::unique_ptr<PixelMap> smooth(PixelMapTools::Resize(map, 3, 2, true));
                const bool good = written && read != nullptr && same_pixels(*read, map) &&
                                  icon != nullptr && smooth != nullptr;
                wrong += good ? 0 : 1;
            }
        });
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(wrong, 0);
}
