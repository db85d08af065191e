#include "foundation/GBufferedIO.h"
#include "foundation/GException.h"
#include "foundation/GFileIO.h"
#include "foundation/GFlateBufferedIO.h"
#include "foundation/fpstream.h"
#include "foundation/iopstream.h"
#include "tests/TemporaryFolder.h"

#include "SampleObjects.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

/// A device over bytes in memory that it shares with the test.
class BytesIO : public GIO {
public:
    explicit BytesIO(std::vector<unsigned char>& bytes) : bytes_(bytes)
    {
        store_open_mode(OpenReadWrite);
    }
    ~BytesIO() override { ++ended; }
    long gseek(long offset, IOSeekDirection direction) override
    {
        const auto size = static_cast<long>(bytes_.size());
        at_ = offset + (direction == SeekBegin ? 0 : direction == SeekCurrent ? at_ : size);
        return at_;
    }
    long gwrite(const void* data, long size) override
    {
        if (fails)
            throw GStreamException("the device fails");
        if (at_ + size > static_cast<long>(bytes_.size()))
            bytes_.resize(static_cast<std::size_t>(at_ + size));
        std::copy_n(static_cast<const unsigned char*>(data), size, bytes_.begin() + at_);
        at_ += size;
        return size;
    }
    long gread(void* data, long size) override
    {
        const long left = std::max(0L, static_cast<long>(bytes_.size()) - at_);
        size = std::min(size, left);
        std::copy_n(bytes_.begin() + at_, size, static_cast<unsigned char*>(data));
        at_ += size;
        return size;
    }
    void flush() override { ++flushes; }

    bool fails = false;
    int flushes = 0;
    static inline int ended = 0;

private:
    std::vector<unsigned char>& bytes_;
    long at_ = 0;
};

/// Reader and writer over a buffer that it owns.
class Stream : public iopstream {
public:
    explicit Stream(GAbstractBufferedIO* io) : io_(io) { init(io); }

private:
    std::unique_ptr<GAbstractBufferedIO> io_;
};

/// Bytes that do not repeat soon and yet compress a little.
std::vector<unsigned char> sample_bytes(std::size_t size)
{
    std::vector<unsigned char> bytes(size);
    std::uint32_t state = 12345;
    for (unsigned char& byte : bytes) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<unsigned char>((state >> 24) & 0x3F);
    }
    return bytes;
}

std::vector<unsigned char> packed(const std::vector<unsigned char>& bytes, int level = 4)
{
    std::vector<unsigned char> result;
    GFlateBufferedIO flate(new GBufferedIO(new BytesIO(result), 4096), level);
    flate.gwrite(bytes.data(), static_cast<long>(bytes.size()));
    flate.setIO(new BytesIO(result));  // ends the compressed stream
    return result;
}

std::unique_ptr<GFlateBufferedIO> unpacker(std::vector<unsigned char>& bytes)
{
    return std::make_unique<GFlateBufferedIO>(new GBufferedIO(new BytesIO(bytes), 4096), 4);
}

}  // namespace

TEST(GBufferedIO, WrittenInPiecesOfEverySize_ComesBack)
{
    const std::vector<unsigned char> bytes = sample_bytes(20'000);
    for (const long piece : {1L, 7L, 63L, 64L, 65L, 128L, 1000L, 20'000L}) {
        std::vector<unsigned char> device;
        {
            GBufferedIO io(new BytesIO(device), 64);
            for (long at = 0; at < 20'000; at += piece)
                io.gwrite(bytes.data() + at, std::min(piece, 20'000 - at));
        }
        ASSERT_EQ(device, bytes) << piece;

        std::vector<unsigned char> back(20'000);
        GBufferedIO io(new BytesIO(device), 64);
        for (long at = 0; at < 20'000; at += piece)
            ASSERT_EQ(io.gread(back.data() + at, std::min(piece, 20'000 - at)),
                      std::min(piece, 20'000 - at));
        EXPECT_EQ(back, bytes) << piece;
        EXPECT_EQ(io.gread(back.data(), 1), 0);
    }
}

TEST(GBufferedIO, WriteAfterRead_GoesWhereReadingStood)
{
    std::vector<unsigned char> device = sample_bytes(500);
    std::vector<unsigned char> expected = device;
    {
        Stream stream(new GBufferedIO(new BytesIO(device), 64));
        for (int count = 0; count < 100; ++count)
            static_cast<void>(stream.readByte());
        EXPECT_EQ(stream.tellg(), 100);
        stream.writeDWord(0xAABBCCDD);
        EXPECT_EQ(stream.tellp(), 104);
        EXPECT_EQ(stream.readByte(), device[104]);  // what was written is handed on first
        EXPECT_EQ(stream.tellg(), 105);
    }
    expected[100] = 0xDD;
    expected[101] = 0xCC;
    expected[102] = 0xBB;
    expected[103] = 0xAA;
    EXPECT_EQ(device, expected);
}

TEST(GBufferedIO, Seek_InAndOutOfTheWindow_ReadsTheRightByte)
{
    std::vector<unsigned char> device = sample_bytes(5000);
    GBufferedIO io(new BytesIO(device), 64);
    for (int step = 0; step < 2000; ++step) {
        const long target = step * 997L % 5000;
        const bool relative = step % 3 == 0;
        const long reached = relative ? io.gseek(target - io.gtell(), GIO::SeekCurrent)
                                      : io.gseek(target, GIO::SeekBegin);
        ASSERT_EQ(reached, target);
        unsigned char byte = 0;
        ASSERT_EQ(io.gread(&byte, 1), 1);
        ASSERT_EQ(byte, device[static_cast<std::size_t>(target)]);
    }
    EXPECT_EQ(io.gseek(-1, GIO::SeekEnd), 4999);
    EXPECT_EQ(io.remaining(), 1);
}

TEST(GBufferedIO, SeekAfterWrite_HandsOnWhatWasWritten)
{
    std::vector<unsigned char> device;
    Stream stream(new GBufferedIO(new BytesIO(device), 64));
    stream.writeDWord(1);
    stream.writeDWord(2);
    EXPECT_EQ(stream.seekg(0, GIO::SeekBegin), 0);

    EXPECT_EQ(stream.readDWord(), 1UL);
    EXPECT_EQ(stream.readDWord(), 2UL);
    EXPECT_EQ(stream.remaining(), 0);
}

TEST(GBufferedIO, Seek_BeforeTheBeginning_GivesMinusOne)
{
    std::vector<unsigned char> device(10);
    GBufferedIO io(new BytesIO(device), 64);

    EXPECT_EQ(io.gseek(-1, GIO::SeekBegin), -1);
    EXPECT_EQ(io.gseek(std::numeric_limits<long>::min(), GIO::SeekCurrent), -1);
    EXPECT_EQ(io.gtell(), 0);
}

TEST(GBufferedIO, Remaining_CountsBufferAndDevice)
{
    std::vector<unsigned char> device(1000);
    GBufferedIO io(new BytesIO(device), 64);
    unsigned char bytes[10];
    EXPECT_EQ(io.remaining(), 1000);
    io.gread(bytes, 10);

    EXPECT_EQ(io.remaining(), 990);
}

TEST(GBufferedIO, Flush_HandsOnAndFlushesTheDevice)
{
    std::vector<unsigned char> device;
    auto* bytes_io = new BytesIO(device);
    GBufferedIO io(bytes_io, 64);
    io.gwrite("abc", 3);
    EXPECT_TRUE(device.empty());
    io.flush();

    EXPECT_EQ(device.size(), 3u);
    EXPECT_EQ(bytes_io->flushes, 1);
}

TEST(GBufferedIO, SetIO_FreesTheFormerDeviceAndStartsAnew)
{
    std::vector<unsigned char> first;
    std::vector<unsigned char> second;
    const int ended = BytesIO::ended;
    {
        GBufferedIO io(new BytesIO(first), 64);
        io.gwrite("abc", 3);
        io.flush();
        io.setIO(new BytesIO(second));
        EXPECT_EQ(BytesIO::ended, ended + 1);
        io.gwrite("de", 2);
    }
    EXPECT_EQ(first.size(), 3u);
    EXPECT_EQ(second.size(), 2u);
    EXPECT_EQ(BytesIO::ended, ended + 2);
}

TEST(GBufferedIO, WriteFails_DestructorDoesNotTryAgain)
{
    std::vector<unsigned char> device;
    {
        auto* bytes_io = new BytesIO(device);
        GBufferedIO io(bytes_io, 64);
        io.gwrite("abc", 3);
        bytes_io->fails = true;
        EXPECT_THROW(io.flush(), GStreamException);
        bytes_io->fails = false;
    }
    EXPECT_TRUE(device.empty());
}

TEST(GFlateBufferedIO, EveryLevel_ComesBack)
{
    const std::vector<unsigned char> bytes = sample_bytes(300'000);
    for (int level = -1; level <= 10; ++level) {
        std::vector<unsigned char> device = packed(bytes, level);
        std::vector<unsigned char> back(bytes.size() + 1);
        const auto io = unpacker(device);
        ASSERT_EQ(io->gread(back.data(), static_cast<long>(back.size())),
                  static_cast<long>(bytes.size()));
        back.pop_back();
        EXPECT_EQ(back, bytes) << level;
        if (level > 0) {
            EXPECT_LT(device.size(), bytes.size());
        }
    }
}

TEST(GFlateBufferedIO, NothingWritten_ReadsAsEmpty)
{
    std::vector<unsigned char> nothing;
    unsigned char byte = 0;
    EXPECT_EQ(unpacker(nothing)->gread(&byte, 1), 0);
    std::vector<unsigned char> empty = packed({});
    EXPECT_EQ(unpacker(empty)->gread(&byte, 1), 0);
}

TEST(GFlateBufferedIO, CutAtEveryLength_ThrowsInsteadOfEndingEarly)
{
    const std::vector<unsigned char> bytes = sample_bytes(2000);
    const std::vector<unsigned char> whole = packed(bytes);
    std::vector<unsigned char> back(bytes.size());
    for (std::size_t length = 1; length < whole.size(); ++length) {
        std::vector<unsigned char> cut(whole.begin(),
                                       whole.begin() + static_cast<std::ptrdiff_t>(length));
        const auto io = unpacker(cut);
        EXPECT_THROW(
            {
                io->gread(back.data(), static_cast<long>(back.size()));
                io->gread(back.data(), 1);  // the end has to be found, too
            },
            GStreamException)
            << length;
    }
}

TEST(GFlateBufferedIO, EveryByteChanged_ThrowsOrIsFoundByTheChecksum)
{
    const std::vector<unsigned char> bytes = sample_bytes(500);
    const std::vector<unsigned char> whole = packed(bytes);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::vector<unsigned char> changed = whole;
        changed[at] ^= 0x55;
        const auto io = unpacker(changed);
        std::vector<unsigned char> back(1000);
        EXPECT_THROW(io->gread(back.data(), 1000), GStreamException) << at;
    }
}

TEST(GFlateBufferedIO, Flush_MakesAllThatWasWrittenReadable)
{
    std::vector<unsigned char> device;
    GFlateBufferedIO out(new GBufferedIO(new BytesIO(device), 4096), 6);
    out.gwrite("0123456789", 10);
    out.flush();
    const std::size_t size = device.size();
    out.flush();
    EXPECT_EQ(device.size(), size);  // nothing new

    std::vector<unsigned char> so_far = device;
    char back[10] = {};
    EXPECT_EQ(unpacker(so_far)->gread(back, 10), 10);
    EXPECT_EQ(std::string(back, 10), "0123456789");
    EXPECT_EQ(out.gtell(), 10);
}

TEST(GFlateBufferedIO, SeekWhileReading_ForwardAndBack)
{
    const std::vector<unsigned char> bytes = sample_bytes(300'000);
    std::vector<unsigned char> device = packed(bytes);
    const auto io = unpacker(device);
    for (const long target : {5L, 299'999L, 0L, 150'000L, 150'001L, 149'000L, 70'000L}) {
        ASSERT_EQ(io->gseek(target, GIO::SeekBegin), target);
        unsigned char byte = 0;
        ASSERT_EQ(io->gread(&byte, 1), 1);
        ASSERT_EQ(byte, bytes[static_cast<std::size_t>(target)]);
        ASSERT_EQ(io->gtell(), target + 1);
    }
    EXPECT_EQ(io->gseek(10, GIO::SeekCurrent), 70'011);
    EXPECT_EQ(io->gseek(1'000'000, GIO::SeekBegin), 300'000);  // its end
    EXPECT_EQ(io->gseek(0, GIO::SeekEnd), -1);
    EXPECT_EQ(io->gseek(-1, GIO::SeekBegin), -1);
}

TEST(GFlateBufferedIO, SeekWhileWriting_IsRefusedButForAsking)
{
    std::vector<unsigned char> device;
    GFlateBufferedIO io(new GBufferedIO(new BytesIO(device), 4096), 6);
    io.gwrite("abc", 3);

    EXPECT_EQ(io.gseek(0, GIO::SeekBegin), -1);
    EXPECT_EQ(io.gseek(0, GIO::SeekCurrent), 3);
}

TEST(GFlateBufferedIO, ReadsOrWritesNotBoth)
{
    std::vector<unsigned char> device;
    GFlateBufferedIO writer(new GBufferedIO(new BytesIO(device), 4096), 6);
    writer.gwrite("abc", 3);
    unsigned char byte = 0;
    EXPECT_THROW(writer.gread(&byte, 1), GStreamException);

    std::vector<unsigned char> read_device = packed({1, 2, 3});
    const auto reader = unpacker(read_device);
    reader->gread(&byte, 1);
    EXPECT_THROW(reader->gwrite(&byte, 1), GStreamException);
}

TEST(GFlateBufferedIO, DeviceFailsOnWriting_DestructorIsQuiet)
{
    std::vector<unsigned char> device;
    auto* bytes_io = new BytesIO(device);
    const std::vector<unsigned char> bytes = sample_bytes(300'000);
    {
        GFlateBufferedIO io(new GBufferedIO(bytes_io, 4096), 6);
        bytes_io->fails = true;
        EXPECT_THROW(io.gwrite(bytes.data(), 300'000), GStreamException);
        EXPECT_THROW(io.gwrite(bytes.data(), 300'000), GStreamException);
    }
    EXPECT_TRUE(device.empty());
}

TEST(GFlateBufferedIO, HighlyPackedData_IsReadInPieces)
{
    std::vector<unsigned char> device = packed(std::vector<unsigned char>(50'000'000), 9);
    EXPECT_LT(device.size(), 100'000u);
    const auto io = unpacker(device);
    std::vector<unsigned char> piece(1'000'000);
    long total = 0;
    while (const long count = io->gread(piece.data(), 1'000'000))
        total += count;

    EXPECT_EQ(total, 50'000'000);
}

TEST(GFlateBufferedIO, ObjectsThroughCompressedFile_ComeBack)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("objects.bin");
    SampleNode node("packed");
    node.peer = &node;
    const auto file = [&](GIO::IOOpenMode mode, GFileIO::IOCreateMode create) {
        return new GFlateBufferedIO(
            new GBufferedIO(new GFileIO(name.c_str(), mode, create, GFileIO::ShareRead), 4096), 4);
    };
    {
        Stream out(file(GIO::OpenWrite, GFileIO::CreateOrTruncate));
        out.writePointer(&node);
    }
    Stream in(file(GIO::OpenRead, GFileIO::OpenExisting));
    auto* back = in.read_pointer<SampleNode>();

    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->name, "packed");
    EXPECT_EQ(back->peer, back);
    GStreamable::destroy(back);
}

TEST(FileStream, ContentsLargerThanTheBuffer_ComeBack)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("large.bin");
    const std::vector<unsigned char> bytes = sample_bytes(500'000);
    {
        ofpstream out(name.c_str());
        ASSERT_TRUE(out.good());
        for (std::uint32_t number = 0; number < 50'000; ++number)
            out.writeDWord(number);
        EXPECT_EQ(out.writeBytes(bytes.data(), 500'000), 500'000);
        EXPECT_EQ(out.tellp(), 700'000);
        out.flush();
        EXPECT_EQ(std::filesystem::file_size(folder.path() / "large.bin"), 700'000u);
    }
    ifpstream in(name.c_str());
    EXPECT_EQ(in.remaining(), 700'000);
    for (std::uint32_t number = 0; number < 50'000; ++number)
        ASSERT_EQ(in.readDWord(), number);
    std::vector<unsigned char> back(500'000);
    EXPECT_EQ(in.readBytes(back.data(), 500'000), 500'000);
    EXPECT_EQ(back, bytes);
    EXPECT_EQ(in.seekg(4 * 40'000, GIO::SeekBegin), 160'000);
    EXPECT_EQ(in.readDWord(), 40'000UL);
    EXPECT_EQ(in.seekg(-4, GIO::SeekEnd), 699'996);
    in.skipBytes(4);
    EXPECT_TRUE(in.good());
    EXPECT_THROW(static_cast<void>(in.readByte()), GStreamException);
}

TEST(FileStream, MissingFile_IsBadAndTellsWhy)
{
    const TemporaryFolder folder;
    ifpstream in(folder.file("none.bin").c_str());

    EXPECT_TRUE(in.bad());
    EXPECT_EQ(in.open_error().kind, zmr::FileErrorKind::NotFound);
    EXPECT_THROW(static_cast<void>(in.readByte()), GStreamException);
}

TEST(FileStream, CreateModes_DoWhatTheySay)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("modes.bin");
    const auto open = [&](GFileIO::IOCreateMode create) {
        return std::make_unique<ofpstream>(name.c_str(), GIO::OpenReadWrite, create,
                                           GFileIO::ShareReadWrite);
    };
    const auto size = [&] { return std::filesystem::file_size(folder.path() / "modes.bin"); };

    EXPECT_TRUE(open(GFileIO::OpenExisting)->bad());
    open(GFileIO::CreateNew)->writeDWord(1);
    EXPECT_EQ(size(), 4u);
    EXPECT_EQ(open(GFileIO::CreateNew)->open_error().kind, zmr::FileErrorKind::AlreadyExists);
    open(GFileIO::OpenOrCreate)->writeByte(1);
    EXPECT_EQ(size(), 4u);
    open(GFileIO::OpenExisting)->writeByte(1);
    EXPECT_EQ(size(), 4u);
    open(GFileIO::CreateOrTruncate)->writeByte(1);
    EXPECT_EQ(size(), 1u);
}

TEST(FileStream, NameWithBackslashes_IsOpenedInBothLanes)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "below");
    const std::string name = folder.file("below\\slashes.bin");
    {
        ofpstream out(name.c_str());
        out.writeByte(5);
    }
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "below" / "slashes.bin"));
    ifpstream in(name.c_str());

    EXPECT_EQ(in.readByte(), 5);
}

TEST(FileStream, NullName_IsBad)
{
    const ifpstream in(nullptr);

    EXPECT_TRUE(in.bad());
}

TEST(FileStream, ReadThroughWriterOnly_FailsWithErrorOfReading)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("mode.bin");
    GFileIO writer(name.c_str(), GIO::OpenWrite, GFileIO::CreateNew, GFileIO::ShareRead);
    unsigned char byte = 0;
    EXPECT_THROW(writer.gread(&byte, 1), GStreamException);
    EXPECT_EQ(writer.get_error(), GIO::ReadFailed);
    EXPECT_EQ(writer.get_open_mode(), GIO::OpenWrite);

    GFileIO reader(name.c_str(), GIO::OpenRead, GFileIO::OpenExisting, GFileIO::ShareReadWrite);
    EXPECT_THROW(reader.gwrite(&byte, 1), GStreamException);
    EXPECT_EQ(reader.get_error(), GIO::WriteFailed);
    EXPECT_THROW(reader.gseek(-1, GIO::SeekBegin), GStreamException);
    EXPECT_EQ(reader.get_error(), GIO::SeekFailed);
}

TEST(FileStream, PositionThatALongCantHold_FailsWithErrorOfSeeking)
{
    const TemporaryFolder folder;
    GFileIO file(folder.file("far.bin").c_str(), GIO::OpenReadWrite, GFileIO::CreateNew,
                 GFileIO::ShareNone);
    const long last = std::numeric_limits<long>::max();
    EXPECT_EQ(file.gseek(last, GIO::SeekBegin), last);

    EXPECT_THROW(file.gseek(1, GIO::SeekCurrent), GStreamException);
    EXPECT_EQ(file.get_error(), GIO::SeekFailed);
    EXPECT_EQ(file.gtell(), last);
    EXPECT_EQ(file.gleft(), 0);
}

TEST(FileStream, ErrorMessage_NamesFileAndReason)
{
    const TemporaryFolder folder;
    GFileIO file(folder.file("missing.bin").c_str(), GIO::OpenRead, GFileIO::OpenExisting,
                 GFileIO::ShareRead);
    EXPECT_FALSE(file.is_open());
    unsigned char byte = 0;
    try {
        file.gread(&byte, 1);
        FAIL() << "nothing was thrown";
    } catch (const GStreamException& failure) {
        EXPECT_NE(std::string(failure.what()).find("missing.bin"), std::string::npos);
        EXPECT_NE(std::string(failure.what()).find(file.open_error().text()), std::string::npos);
    }
}
