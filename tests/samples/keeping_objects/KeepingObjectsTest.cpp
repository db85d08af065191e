// The page for programmers of hosts holds what the program says, and the program says what holds.

#include "tests/TemporaryFolder.h"
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

/// The lines of a file, without what they are indented by.
Lines lines_of(const std::filesystem::path& file)
{
    std::ifstream in(file);
    Lines lines;
    for (std::string line; std::getline(in, line);) {
        if (line.ends_with('\r'))
            line.pop_back();
        lines.push_back(line.substr(std::min(line.find_first_not_of(' '), line.size())));
    }
    return lines;
}

/// The blocks of code in a page.
std::vector<Lines> blocks_of(const Lines& page)
{
    std::vector<Lines> blocks;
    bool inside = false;
    for (const std::string& line : page) {
        if (line.starts_with("```")) {
            inside = !inside;
            if (inside)
                blocks.emplace_back();
        } else if (inside) {
            blocks.back().push_back(line);
        }
    }
    return blocks;
}

}  // namespace

TEST(KeepingObjects, EachBlockOfThePage_StandsInTheProgram)
{
    std::vector<Lines> sources;
    for (const auto& entry : std::filesystem::directory_iterator(ZMR_SAMPLE_SOURCES))
        if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
            sources.push_back(lines_of(entry.path()));
    const std::vector<Lines> blocks = blocks_of(lines_of(ZMR_PAGE));

    EXPECT_EQ(sources.size(), 3U);
    EXPECT_GE(blocks.size(), 16U);
    for (const Lines& block : blocks) {
        ASSERT_FALSE(block.empty());
        const bool is_there = std::any_of(sources.begin(), sources.end(), [&](const Lines& source) {
            return std::search(source.begin(), source.end(), block.begin(), block.end()) !=
                   source.end();
        });
        EXPECT_TRUE(is_there) << "the block that begins with: " << block.front();
    }
}

TEST(KeepingObjects, TheProgram_DoesWhatThePageSays)
{
    const TemporaryFolder folder;
    ChildStart start;
    start.program = ZMR_SAMPLE;
    start.words = {folder.file("")};
    std::string reason;
    const auto child = ChildProcess::Start(start, reason);
    ASSERT_NE(child, nullptr) << reason;

    std::string line;
    std::string last;
    while (child->read_line(line))
        last = line;
    EXPECT_EQ(child->wait().code, 0);
    EXPECT_EQ(last, "all as the page says");
}
