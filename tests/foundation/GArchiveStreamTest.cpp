#include "foundation/GArchiveStream.h"

#include "foundation/GException.h"

#include "platform/CArchive.h"
#include "platform/CFile.h"
#include "tests/TemporaryFolder.h"

#include "FailingFile.h"
#include "SampleObjects.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

/// Both forms of a stream.
class GArchiveStreamForms : public testing::TestWithParam<bool> {};

std::string name_of_form(const testing::TestParamInfo<bool>& form)
{
    return form.param ? "Compressed" : "Plain";
}

INSTANTIATE_TEST_SUITE_P(Forms, GArchiveStreamForms, testing::Bool(), name_of_form);

/// A node with a child, and with itself as its peer.
std::unique_ptr<SampleNode> family()
{
    auto node = std::make_unique<SampleNode>("parent");
    node->child = new SampleNode("child");
    node->child->has_owner = true;
    node->peer = node->child;
    return node;
}

void expect_family(const SampleNode* node)
{
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->name, "parent");
    ASSERT_NE(node->child, nullptr);
    EXPECT_EQ(node->child->name, "child");
    EXPECT_EQ(node->peer, node->child);
}

/// A text of words that repeat now and then.
std::string long_text(std::size_t size)
{
    std::string text;
    for (unsigned number = 12345; text.size() < size; number = number * 1664525 + 1013904223)
        text += "word " + std::to_string(number >> 20) + ' ';
    text.resize(size);
    return text;
}

/// Bytes of the archive's own around a stream.
void store_own(CArchive& archive, std::string_view text)
{
    archive.Write(text.data(), static_cast<UINT>(text.size()));
}

std::string load_own(CArchive& archive, std::size_t size)
{
    std::string text(size, '?');
    text.resize(archive.Read(text.data(), static_cast<UINT>(size)));
    return text;
}

}  // namespace

TEST_P(GArchiveStreamForms, ObjectsInAFile_ComeBack)
{
    const TemporaryFolder folder;
    const auto nodes = SampleNode::alive;
    {
        const auto written = family();
        CFile file(folder.file("objects").c_str(), CFile::modeCreate | CFile::modeWrite);
        GArchiveStream out(file, GIO::OpenWrite, GetParam());
        EXPECT_TRUE(out.good());
        out.writePointer(written.get());
        out.flush();
    }
    {
        CFile file(folder.file("objects").c_str(), CFile::modeRead);
        GArchiveStream in(file, GIO::OpenRead, GetParam());
        const std::unique_ptr<SampleNode> read(in.read_owned<SampleNode>());
        expect_family(read.get());
    }
    EXPECT_EQ(SampleNode::alive, nodes);
}

TEST_P(GArchiveStreamForms, ObjectsInAMemoryFile_ComeBack)
{
    FailingFile file;
    {
        const auto written = family();
        GArchiveStream out(file, GIO::OpenWrite, GetParam());
        out.writePointer(written.get());
    }
    file.SeekToBegin();
    GArchiveStream in(file, GIO::OpenRead, GetParam());
    const std::unique_ptr<SampleNode> read(in.read_owned<SampleNode>());
    expect_family(read.get());
}

TEST_P(GArchiveStreamForms, ObjectsInAnArchiveBesideItsOwnData_ComeBackAllOfThem)
{
    FailingFile file;
    {
        const auto written = family();
        CArchive archive(&file, CArchive::store);
        store_own(archive, "before");
        {
            GArchiveStream out(archive, GetParam());
            out.writePointer(written.get());
        }
        store_own(archive, "between");
        {
            GArchiveStream out(archive, GetParam());
            out.writeDWord(4711);
            out << GString("more");
        }
        store_own(archive, "behind");
    }
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(load_own(archive, 6), "before");
    {
        GArchiveStream in(archive, GetParam());
        const std::unique_ptr<SampleNode> read(in.read_owned<SampleNode>());
        expect_family(read.get());
    }
    EXPECT_EQ(load_own(archive, 7), "between");
    {
        GArchiveStream in(archive, GetParam());
        EXPECT_EQ(in.readDWord(), 4711u);
        GString text;
        in >> text;
        EXPECT_EQ(text, "more");
    }
    EXPECT_EQ(load_own(archive, 100), "behind");
}

TEST_P(GArchiveStreamForms, DataOfAnyLengthBetweenOwnData_LeavesTheArchiveBehindIt)
{
    // Around the buffers' sizes: the archive's, the stream's and the packer's.
    for (const std::size_t size :
         {1u, 100u, 4000u, 4095u, 4096u, 4097u, 16'000u, 40'000u, 65'536u, 70'000u, 200'000u}) {
        const std::string text = long_text(size);
        FailingFile file;
        {
            CArchive archive(&file, CArchive::store);
            store_own(archive, "a");
            {
                GArchiveStream out(archive, GetParam());
                EXPECT_EQ(out.writeBytes(text.data(), static_cast<long>(size)),
                          static_cast<long>(size));
            }
            store_own(archive, std::string(30'000, 'z') + "end");
        }
        file.SeekToBegin();
        CArchive archive(&file, CArchive::load);
        EXPECT_EQ(load_own(archive, 1), "a");
        {
            GArchiveStream in(archive, GetParam());
            std::string read(size, '?');
            ASSERT_EQ(in.readBytes(read.data(), static_cast<long>(size)), static_cast<long>(size));
            EXPECT_EQ(read, text) << size;
        }
        EXPECT_EQ(load_own(archive, 40'000), std::string(30'000, 'z') + "end") << size;
    }
}

TEST_P(GArchiveStreamForms, AFileThatWasRead_StandsBehindTheStream)
{
    FailingFile file;
    file.Write("head", 4);
    {
        GArchiveStream out(file, GIO::OpenWrite, GetParam());
        out.writeDWord(4711);
    }
    const ULONGLONG end = file.GetPosition();
    file.Write("tail", 4);
    file.Seek(4, CFile::begin);
    {
        GArchiveStream in(file, GIO::OpenRead, GetParam());
        EXPECT_EQ(in.readDWord(), 4711u);
    }
    EXPECT_EQ(file.GetPosition(), end);
}

TEST_P(GArchiveStreamForms, NothingReadOrWritten_MovesNothing)
{
    FailingFile file("0123456789");
    file.Seek(3, CFile::begin);
    {
        const GArchiveStream in(file, GIO::OpenRead, GetParam());
        const GArchiveStream out(file, GIO::OpenWrite, GetParam());
    }
    EXPECT_EQ(file.GetPosition(), 3u);
    EXPECT_EQ(file.content(), "0123456789");
}

TEST_P(GArchiveStreamForms, AFailureOfTheFileWhileWriting_GoesThroughAsItIs)
{
    FailingFile file;
    file.writes_left = 2;
    const std::string text = long_text(400'000);
    GArchiveStream out(file, GIO::OpenWrite, GetParam());
    EXPECT_EQ(code_of([&] {
                  for (int turn = 0; turn < 100; ++turn)
                      out.writeBytes(text.data(), static_cast<long>(text.size()));
              }),
              FailingFile::kCode);
    EXPECT_TRUE(out.bad());
    EXPECT_THROW(out.writeByte(1), GStreamException);
}

TEST_P(GArchiveStreamForms, EndedAfterAFailedWrite_FailsNoSecondTime)
{
    FailingFile file;
    file.writes_left = 0;
    {
        GArchiveStream out(file, GIO::OpenWrite, GetParam());
        out.writeDWord(1);
        EXPECT_EQ(code_of([&out] { out.flush(); }), FailingFile::kCode);
        file.fails = true;
    }
    EXPECT_EQ(file.flushes, 0);
}

TEST_P(GArchiveStreamForms, EndedOverAFileThatFailsOnlyThen_DropsTheFailure)
{
    FailingFile file;
    {
        GArchiveStream out(file, GIO::OpenWrite, GetParam());
        out.writeDWord(1);
        file.fails = true;
    }
    EXPECT_EQ(file.flushes, 0);

    FailingFile source;
    {
        GArchiveStream out(source, GIO::OpenWrite, GetParam());
        out.writeDWord(1);
    }
    source.Write("tail", 4);
    source.SeekToBegin();
    GArchiveStream in(source, GIO::OpenRead, GetParam());
    EXPECT_EQ(in.readDWord(), 1u);
    source.fails = true;
}

TEST_P(GArchiveStreamForms, AFailureOfTheArchiveWhileReading_GoesThroughAsItIs)
{
    FailingFile file("0123456789");
    file.fails_reading = true;
    CArchive archive(&file, CArchive::load);
    GArchiveStream in(archive, GetParam());
    EXPECT_EQ(code_of([&in] { static_cast<void>(in.readByte()); }), FailingFile::kCode);
    EXPECT_TRUE(in.bad());
}

TEST_P(GArchiveStreamForms, CutAtEachLength_IsAStreamException)
{
    FailingFile whole;
    {
        const auto written = family();
        GArchiveStream out(whole, GIO::OpenWrite, GetParam());
        out.writePointer(written.get());
    }
    const std::string bytes = whole.content();
    const auto nodes = SampleNode::living.size();
    int readable = 0;
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        FailingFile file(std::string_view(bytes).substr(0, length));
        CArchive archive(&file, CArchive::load);
        GArchiveStream in(archive, GetParam());
        try {
            const std::unique_ptr<SampleNode> read(in.read_owned<SampleNode>());
            expect_family(read.get());
            ++readable;
        } catch (const GStreamException&) {
        }
        SampleNode::end_orphans_beyond(nodes);
    }
    // Of a packed stream the closing checksum can be missing, which is read with what comes next.
    EXPECT_LE(readable, GetParam() ? 9 : 0);
    EXPECT_EQ(SampleNode::living.size(), nodes);
}

TEST(GArchiveStream, CompressedWithMoreToRead_StaysFurtherOn)
{
    const std::string text = long_text(300'000);
    FailingFile file;
    {
        GArchiveStream out(file, GIO::OpenWrite, true);
        out.writeBytes(text.data(), static_cast<long>(text.size()));
    }
    EXPECT_LT(file.content().size(), text.size());
    file.SeekToBegin();
    {
        GArchiveStream in(file, GIO::OpenRead, true);
        EXPECT_EQ(in.readByte(), static_cast<unsigned char>(text[0]));
    }
    EXPECT_GT(file.GetPosition(), 1u);
}

TEST(GArchiveStream, DataBehindAPackedStream_IsNeverPartOfIt)
{
    FailingFile file;
    {
        GArchiveStream out(file, GIO::OpenWrite, true);
        out.writeDWord(4711);
    }
    file.Write("tail", 4);
    file.SeekToBegin();
    GArchiveStream in(file, GIO::OpenRead, true);
    EXPECT_EQ(in.readDWord(), 4711u);
    EXPECT_THROW(static_cast<void>(in.readByte()), GStreamException);
}

TEST(GArchiveStream, ForReadingAndWriting_WorksOnOneFile)
{
    FailingFile file;
    GArchiveStream both(file, GIO::OpenReadWrite, false);
    both.writeDWord(1);
    both.writeDWord(2);
    EXPECT_EQ(both.tellp(), 8);
    EXPECT_EQ(both.seekg(4, GIO::SeekBegin), 4);
    EXPECT_EQ(both.readDWord(), 2u);
    both.writeDWord(3);
    both.flush();
    EXPECT_EQ(file.GetLength(), 12u);
    EXPECT_EQ(file.flushes, 1);
}

TEST(GArchiveStream, PositionInAnArchive_CountsFromWhereItTookOver)
{
    FailingFile file;
    CArchive archive(&file, CArchive::store);
    store_own(archive, "own");
    GArchiveStream out(archive, false);
    EXPECT_EQ(out.tellp(), 0);
    out.writeDWord(1);
    EXPECT_EQ(out.tellp(), 4);
    EXPECT_EQ(out.seekg(0, GIO::SeekBegin), -1);
}
