// Every file that the tool is given may be anything. Whatever it is: a message that names it, the
// right exit code, and nothing lost that was there.
#include "graphics/PixelMap.h"
#include "odb/ObjectDatabase.h"
#include "tests/tools/ToolTest.h"

#include <gmock/gmock.h>

using testing::AnyOf;
using testing::HasSubstr;

class OdbBadInput : public ToolTest {
protected:
    // All commands that read the library.
    [[nodiscard]] std::vector<std::vector<std::string>> reading_commands() const
    {
        return {{"list", library()},
                {"show", library(), "badge.png"},
                {"info", library()},
                {"verify", library()},
                {"extract", library(), "badge.png", "--to", file("out")},
                {"copy", library(), "badge.png", "--to", file("other.odb")}};
    }
    // All commands that write to a library that is there.
    [[nodiscard]] std::vector<std::vector<std::string>> writing_commands() const
    {
        return {{"rename", library(), "badge.png", "other"},
                {"remove", library(), "badge.png"},
                {"pack", library()}};
    }
    void expect_all_refuse(int code, const std::string& content) const
    {
        auto commands = reading_commands();
        for (const auto& command : writing_commands())
            commands.push_back(command);
        for (const auto& command : commands) {
            write("library.odb", content);
            const ToolResult result = run(code, command);
            EXPECT_THAT(result.err, HasSubstr("library.odb")) << command[0];
            EXPECT_EQ(read("library.odb"), content) << command[0];
        }
        EXPECT_FALSE(exists("other.odb"));
    }
};

TEST_F(OdbBadInput, WrongUsage_EndsWithTwo)
{
    run(2, {});
    run(2, {"fly"});
    run(2, {"list"});
    run(2, {"add", library()});
    run(2, {"extract", library(), "name"});
    run(2, {"copy", library(), "name"});
    run(2, {"rename", library(), "name"});
    run(2, {"list", library(), "--unknown"});
    EXPECT_FALSE(exists("library.odb"));
}

TEST_F(OdbBadInput, WrongUsage_IsNamedWithTheHelpToAskFor)
{
    EXPECT_EQ(run(2, {"fly"}).err, "odb: there is no command \"fly\"; \"odb --help\" lists them\n");
    EXPECT_EQ(run(2, {"picture", "fly", library()}).err,
              "odb: there is no command \"fly\"; \"odb picture --help\" lists them\n");
    EXPECT_EQ(run(2, {"import", library()}).err,
              "odb: SOURCE is required; \"odb import --help\" tells more\n");
    EXPECT_THAT(run(2, {"movie", "set", library(), "--json"}).err,
                HasSubstr("\"odb movie set --help\" tells more"));
    EXPECT_THAT(run(2, {}).err, HasSubstr("\"odb --help\" tells more"));
}

TEST_F(OdbBadInput, DirectoryInThePlaceOfALibrary_AndNoDirectoryForIt_AreNamed)
{
    make_folder("library.odb");
    for (const auto& command : reading_commands()) {
        EXPECT_EQ(run(1, command).err, "odb: " + library() + ": it is a directory\n") << command[0];
    }
    const std::string nowhere = file("nowhere") + "/x.odb";
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"create", nowhere}, {"add", nowhere, sample("badge.png")}}) {
        const ToolResult result = run(1, command);
        EXPECT_THAT(result.err, HasSubstr("there is no directory")) << command[0];
        EXPECT_THAT(result.err, HasSubstr("nowhere")) << command[0];
    }
}

TEST_F(OdbBadInput, FilesInTheWayOfExtracting_AreNamedWithTheWayAround)
{
    make_library();
    write("out", "a file");
    EXPECT_THAT(run(1, {"extract", library(), "badge.png", "--to", file("out")}).err,
                HasSubstr("a file of that name is there"));
    EXPECT_EQ(read("out"), "a file");
    run(0, {"extract", library(), "badge.png", "--to", file("there")});
    EXPECT_THAT(run(1, {"extract", library(), "badge.png", "--to", file("there")}).err,
                HasSubstr("--overwrite replaces it"));
}

TEST_F(OdbBadInput, Help_IsThereForEachCommand)
{
    EXPECT_THAT(run(0, {"--help"}).out, HasSubstr("verify"));
    for (const char* command : {"create", "add", "list", "show", "extract", "rename", "remove",
                                "copy", "pack", "verify", "info"})
        EXPECT_THAT(run(0, {command, "--help"}).out, HasSubstr("--json")) << command;
}

TEST_F(OdbBadInput, MissingLibrary_IsNamed)
{
    auto commands = reading_commands();
    for (const auto& command : writing_commands())
        commands.push_back(command);
    for (const auto& command : commands) {
        EXPECT_THAT(run(1, command).err, HasSubstr("library.odb")) << command[0];
        EXPECT_FALSE(exists("library.odb")) << command[0];
    }
}

TEST_F(OdbBadInput, FileOfAnotherKind_IsRefusedAndKept)
{
    expect_all_refuse(1, std::string("Dear reader,\n") + std::string(100'000, 'x'));
    write("library.odb", "a letter");
    run(1, {"add", library(), sample("badge.png")});
    EXPECT_EQ(read("library.odb"), "a letter");
    run(1, {"copy", library(), "x", "--to", file("other.odb")});
    run(0, {"create", file("real.odb")});
    run(1, {"copy", file("real.odb"), "/", "--to", library()});
    EXPECT_EQ(read("library.odb"), "a letter");
}

TEST_F(OdbBadInput, EmptyFile_IsRefusedByReaders)
{
    write("library.odb", "");
    for (const auto& command : reading_commands())
        EXPECT_THAT(run(1, command).err, HasSubstr("library.odb")) << command[0];
    EXPECT_EQ(read("library.odb"), "");
}

TEST_F(OdbBadInput, TruncatedLibrary_IsReportedAndNeverWrittenOver)
{
    run(0, {"add", library(), sample("badge.png"), sample("tiles.bmp")});
    const std::string whole = read("library.odb");
    for (const std::size_t size : {whole.size() / 2, whole.size() / 4, std::size_t{5000},
                                   std::size_t{100}, std::size_t{9}}) {
        const std::string cut = whole.substr(0, size);
        write("library.odb", cut);

        const ToolResult result = run_tool({"verify", library()});

        EXPECT_THAT(result.code, AnyOf(1, 3)) << size;
        EXPECT_NE(result.err, "") << size;
        EXPECT_EQ(read("library.odb"), cut) << size;
    }
}

TEST_F(OdbBadInput, NoiseBehindAGoodStart_EndsWithoutACrash)
{
    run(0, {"add", library(), sample("badge.png"), sample("tiles.bmp")});
    const std::string whole = read("library.odb");
    std::uint32_t noise = 1;
    for (int round = 0; round < 12; ++round) {
        std::string bytes = whole;
        for (int i = 0; i < 40; ++i) {
            noise = noise * 1664525u + 1013904223u;
            bytes[noise % bytes.size()] = static_cast<char>(noise >> 24);
        }
        write("library.odb", bytes);
        EXPECT_THAT(run_tool({"verify", library()}).code, AnyOf(0, 1, 3));
        EXPECT_THAT(run_tool({"list", library()}).code, AnyOf(0, 1, 3));
        EXPECT_THAT(run_tool({"info", library()}).code, AnyOf(0, 1, 3));
    }
}

TEST_F(OdbBadInput, LibraryLockedByAnotherProcess_IsRefusedForWritingAndReadable)
{
    make_library();
    ObjectDatabase writer(library().c_str(), GIO::OpenReadWrite);
    ASSERT_NE(writer.server, nullptr);

    const ToolResult added = run(1, {"add", library(), sample("tiles.bmp")});
    EXPECT_THAT(added.err, HasSubstr("in use"));
    EXPECT_THAT(added.err, HasSubstr("library.odb"));
    for (const auto& command : writing_commands())
        EXPECT_THAT(run(1, command).err, HasSubstr("in use")) << command[0];
    run(1, {"copy", library(), "badge.png", "--to", library()});
    EXPECT_EQ(run_json(0, {"list", library(), "-r"}).size(), 3u);

    writer.close();
    run(0, {"add", library(), sample("tiles.bmp")});
}

TEST_F(OdbBadInput, ResourceFileOfAnotherKind_IsNotMadeALibrary)
{
    {
        ResourceFile settings(library().c_str(), GIO::OpenReadWrite);
        settings.set_type("settings");
        ResourceFile::CommitScope scope(settings);
        ObjectDatabase content;
        settings.put(&content, "name", "type", false);
    }

    EXPECT_THAT(run(1, {"add", library(), sample("badge.png")}).err, HasSubstr("another kind"));
    const ResourceFile after(library().c_str(), GIO::OpenRead);
    EXPECT_EQ(after.get_type(), "settings");
}

TEST_F(OdbBadInput, HostileNames_AreEscapedForPeopleAndStayInsideOnExtraction)
{
    const std::vector<std::string> names{
        "..",  ".",       "../../up.png", "/root.png",   "a\\b", "C:x",
        "NUL", "con.png", "line\nbreak",  "\x1b[2Jwipe", "dot.", "bad\xff utf"};
    {
        ObjectDatabase database(library().c_str(), GIO::OpenReadWrite);
        GResourcePath path;
        path += "..";
        path += "..";
        PixelMap picture(2, 2, AbstractImage::Format24, nullptr);
        for (const std::string& name : names)
            database.append_object(&picture, path, GString(std::string_view(name)), nullptr);
        database.append_object(&picture, GResourcePath(), GString(".."), nullptr);
    }

    const ToolResult text = run(0, {"list", library(), "-r"});
    EXPECT_EQ(text.out.find('\x1b'), std::string::npos);
    EXPECT_THAT(text.out, HasSubstr("\\x1b[2Jwipe"));
    EXPECT_THAT(text.out, HasSubstr("line\\nbreak"));
    EXPECT_EQ(run_json(0, {"list", library(), "-r"}).size(), names.size() + 1);

    make_folder("deep/deeper");
    run(0, {"extract", library(), "/", "--to", file("deep/deeper/out")});
    std::size_t inside = 0;
    std::size_t all = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_.path())) {
        if (!entry.is_regular_file() || entry.path().filename() == "library.odb")
            continue;
        ++all;
        const auto relative =
            entry.path().lexically_relative(folder_.path() / "deep" / "deeper" / "out");
        inside += *relative.begin() == ".." ? 0u : 1u;
    }
    EXPECT_EQ(all, names.size() + 1);
    EXPECT_EQ(inside, all);
}
