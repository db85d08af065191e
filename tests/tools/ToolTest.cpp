#include "tests/tools/ToolTest.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace {

std::filesystem::path to_path(const std::string& name)
{
    return {std::u8string(name.begin(), name.end())};
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
    // A BMP of 24 bits a pixel.
    std::string bytes(
        "BM\x46\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x02\0\0\0\x02\0\0\0\x01\0\x18\0\0\0\0\0", 34);
    bytes.append(20, '\0');
    bytes.append("\x10\x20\x30\x40\x50\x60\0\0\x70\x01\x02\x03\x04\x05\0\0", 16);
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
