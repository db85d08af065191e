// The tool as a person sees it on a terminal, and Ctrl-C there.
#include "tests/tools/ToolTest.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

class OdbOnTerminal : public ToolTest {
protected:
    // `count` names of one picture that takes some time and room.
    void make_large_pictures(int count) const
    {
        make_folder("pictures");
        write_noise_picture("pictures/0.bmp", 300);
        for (int i = 1; i < count; ++i)
            std::filesystem::create_hard_link(file("pictures/0.bmp"),
                                              file("pictures/" + std::to_string(i) + ".bmp"));
    }
    static ToolControl with(ChildTerminal terminal)
    {
        ToolControl control;
        control.terminal = terminal;
        return control;
    }
};

TEST_F(OdbOnTerminal, InterruptedAdd_EndsWithAGoodFileOfWhatWasAdded)
{
    constexpr int kPictures = 1000;
    make_large_pictures(kPictures);
    ToolControl interrupt = with(ChildTerminal::Aside);
    interrupt.interrupt_at_file = library();

    const ToolResult result = run_tool({"add", library(), file("pictures"), "--json"}, interrupt);

    EXPECT_EQ(result.code, 1) << result.err;
    EXPECT_THAT(result.err, HasSubstr("interrupted"));
    const int added = nlohmann::json::parse(result.out)["added"];
    EXPECT_GT(added, 0);
    EXPECT_LT(added, kPictures);
    EXPECT_EQ(run_json(0, {"info", library()})["objects"], added);
    EXPECT_EQ(run_json(0, {"verify", library()})["ok"], true);
}

TEST_F(OdbOnTerminal, ErrorsOnATerminal_ShowProgress)
{
    const ToolResult result =
        run_tool({"add", library(), sample("badge.png")}, with(ChildTerminal::ForErrors));

    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.terminal, HasSubstr("adding 1 "));
    EXPECT_EQ(result.out, "1 added, 0 skipped\n");
}

TEST_F(OdbOnTerminal, Complaints_StandOnLinesOfTheirOwn)
{
    write("text.txt", "nothing that a format reads");

    const ToolResult result = run_tool({"add", library(), sample("badge.png"), file("text.txt")},
                                       with(ChildTerminal::ForErrors));

    EXPECT_EQ(result.code, 1);
    const std::size_t complaint = result.terminal.find("odb: ");
    ASSERT_NE(complaint, std::string::npos) << result.terminal;
    // Behind what takes the line of progress away, or what a console makes of that.
    const std::string before = result.terminal.substr(0, complaint);
    EXPECT_THAT(before.substr(before.find_last_of("\r\n") + 1), Not(HasSubstr("adding")));
}

TEST_F(OdbOnTerminal, ErrorsElsewhere_ShowNoProgress)
{
    const ToolResult result =
        run_tool({"add", library(), sample("badge.png")}, with(ChildTerminal::Aside));

    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.terminal, Not(HasSubstr("adding")));
    EXPECT_EQ(result.out, "1 added, 0 skipped\n");
}
