// The tool as a person sees it on a terminal, and Ctrl-C there.
#include "tests/tools/ToolTest.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace {

// What the escape sequences leave to be seen, with a new line wherever the cursor jumps to.
std::string visible(const std::string& terminal)
{
    std::string text;
    for (std::size_t i = 0; i < terminal.size(); ++i) {
        if (terminal[i] != '\x1b') {
            text += terminal[i] == '\r' ? '\n' : terminal[i];
            continue;
        }
        const std::size_t end =
            terminal.find_first_of("ABCDEFGHJKSTfhlmnsu", i);  // the letters that end one
        if (end == std::string::npos)
            break;
        if (terminal[end] == 'C')
            text += ' ';  // over a blank
        else if (terminal[end] == 'H' || terminal[end] == 'G')
            text += '\n';
        i = end;
    }
    return text;
}

}  // namespace

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
    EXPECT_THAT(visible(result.terminal), HasSubstr("adding 1 "));
    EXPECT_THAT(visible(result.terminal), Not(HasSubstr("[K")));
    EXPECT_EQ(result.out, "1 added, 0 skipped\n");
}

TEST_F(OdbOnTerminal, Complaints_StandOnLinesOfTheirOwn)
{
    write("text.txt", "nothing that a format reads");

    const ToolResult result = run_tool({"add", library(), sample("badge.png"), file("text.txt")},
                                       with(ChildTerminal::ForErrors));

    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(visible(result.terminal), HasSubstr("\nodb: " + file("text.txt") + ": skipped"));
}

TEST_F(OdbOnTerminal, ErrorsElsewhere_ShowNoProgress)
{
    const ToolResult result =
        run_tool({"add", library(), sample("badge.png")}, with(ChildTerminal::Aside));

    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(visible(result.terminal), Not(HasSubstr("adding")));
    EXPECT_EQ(result.out, "1 added, 0 skipped\n");
}
