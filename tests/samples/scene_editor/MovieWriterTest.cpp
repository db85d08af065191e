#include "turning_movie/MovieWriter.h"

#include "tests/odb/UncompressedMovie.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// Those of the movie, the top row first.
std::vector<std::uint32_t> pixels_of(const UncompressedMovie& movie, int frame)
{
    std::vector<std::uint32_t> pixels;
    for (int row = movie.height - 1; row >= 0; --row) {
        for (int x = 0; x < movie.width; ++x) {
            pixels.push_back(static_cast<std::uint32_t>(movie.value(frame, x, row, 2)) << 16 |
                             static_cast<std::uint32_t>(movie.value(frame, x, row, 1)) << 8 |
                             movie.value(frame, x, row, 0));
        }
    }
    return pixels;
}

}  // namespace

TEST(MovieWriter, WritesTheBytesThatAnotherWriterOfTheLayoutWrites)
{
    const UncompressedMovie movie;
    MovieWriter writer(movie.width, movie.height, 25);
    for (int frame = 0; frame < movie.frames; ++frame)
        writer.add(pixels_of(movie, frame));

    EXPECT_TRUE(writer.bytes() == movie.bytes());
}

TEST(MovieWriter, RowsThatAreNoMultipleOfFourBytes_AreFilledUp)
{
    MovieWriter writer(1, 2, 10);
    writer.add(std::vector<std::uint32_t>{0x112233, 0x445566});

    const std::string bytes = writer.bytes();
    const std::size_t frame = bytes.find("00db");
    ASSERT_NE(frame, std::string::npos);
    EXPECT_EQ(bytes.substr(frame + 8, 8), std::string("\x66\x55\x44\0\x33\x22\x11\0", 8));
}
