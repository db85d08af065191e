#include "tests/tools/ToolTest.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>

namespace {

std::filesystem::path to_path(const std::string& name)
{
    return {std::u8string(name.begin(), name.end())};
}

// Of a BMP of `size` by `size` pixels, 24 bits each.
std::string bmp_header(std::uint16_t size)
{
    std::string bytes = "BM";
    const auto append = [&bytes](std::uint32_t number, int count) {
        for (int i = 0; i < count; ++i)
            bytes += static_cast<char>(number >> (8 * i));
    };
    constexpr std::uint32_t kHeader = 54;
    const std::uint32_t rows = (size * 3u + 3) / 4 * 4 * size;
    append(kHeader + rows, 4);
    append(0, 4);
    append(kHeader, 4);
    append(40, 4);  // of the second header
    append(size, 4);
    append(size, 4);
    append(1, 2);   // plane
    append(24, 2);  // bits for each pixel
    append(0, 4);   // not compressed
    append(rows, 4);
    bytes.append(16, '\0');
    return bytes;
}

}  // namespace

const std::vector<std::string>& ToolTest::kModule()
{
    static const std::vector<std::string> words{"--module", ZMR_SCENE_MODULE};
    return words;
}

void ToolTest::write(const std::string& name, const std::string& bytes) const
{
    std::ofstream out(to_path(file(name)), std::ios::binary);
    out << bytes;
    ASSERT_TRUE(out.flush());
}

std::string ToolTest::read(const std::string& name) const
{
    std::ifstream in(to_path(file(name)), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

bool ToolTest::exists(const std::string& name) const
{
    return std::filesystem::exists(to_path(file(name)));
}

void ToolTest::write_picture(const std::string& name) const
{
    write(name, bmp_header(2) + std::string("\x10\x20\x30\x40\x50\x60\0\0"
                                            "\x70\x01\x02\x03\x04\x05\0\0",
                                            16));
}

void ToolTest::write_noise_picture(const std::string& name, std::uint16_t size) const
{
    const std::size_t row = (size * std::size_t{3} + 3) / 4 * 4;
    std::string bytes = bmp_header(size);
    std::minstd_rand random(1);
    for (std::size_t left = row * size; left > 0; --left)
        bytes += static_cast<char>(random() >> 8);
    write(name, bytes);
}

void ToolTest::make_folder(const std::string& name) const
{
    std::filesystem::create_directories(to_path(file(name)));
}

void ToolTest::make_library() const
{
    write_picture("dot.bmp");
    run(0, {"add", library(), sample("badge.png")});
    run(0,
        {"add", library(), sample("ring.obj"), "--into", "models", "--module", ZMR_SCENE_MODULE});
    run(0, {"add", library(), file("dot.bmp"), "--into", "/a/b/"});
}

ToolResult ToolTest::run(int code, const std::vector<std::string>& words)
{
    ToolResult result = run_tool(words);
    EXPECT_EQ(result.code, code) << testing::PrintToString(words) << "\n"
                                 << result.out << result.err;
    return result;
}

nlohmann::json ToolTest::run_json(int code, std::vector<std::string> words)
{
    words.push_back("--json");
    const ToolResult result = run(code, words);
    nlohmann::json value = nlohmann::json::parse(result.out, nullptr, false);
    EXPECT_FALSE(value.is_discarded()) << result.out;
    return value;
}

std::vector<std::string> ToolTest::paths() const
{
    std::vector<std::string> result;
    for (const auto& entry : run_json(0, {"list", library(), "--recursive"}))
        result.push_back(entry.value("path", "?"));
    std::sort(result.begin(), result.end());
    return result;
}
