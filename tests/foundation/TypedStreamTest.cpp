#include "foundation/GException.h"
#include "foundation/GString.h"
#include "foundation/iopstream.h"
#include "foundation/mpstream.h"

#include "SampleObjects.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

std::vector<unsigned char> copy_of(const ompstream& out)
{
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

/// Never initialised.
class NakedStream : public iopstream {};

/// A reader over a device of any kind.
class DeviceReader : public ipstream {
public:
    explicit DeviceReader(GIO* io, long buffer_size = 64) : buffered_(io, buffer_size)
    {
        init(&buffered_);
    }

private:
    GBufferedIO buffered_;
};

/// Can't seek or tell, and gives few bytes at a time.
class PipeIO : public GIO {
public:
    explicit PipeIO(std::vector<unsigned char> bytes) : bytes_(std::move(bytes)) {}
    long gseek(long, IOSeekDirection) override { return -1; }
    long gwrite(const void*, long) override { return 0; }
    long gread(void* data, long size) override
    {
        const long part = std::min({size, 7L, static_cast<long>(bytes_.size() - at_)});
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at_), part,
                    static_cast<unsigned char*>(data));
        at_ += static_cast<std::size_t>(part);
        return part;
    }
    void flush() override {}

private:
    std::vector<unsigned char> bytes_;
    std::size_t at_ = 0;
};

/// Fails at every operation.
class BrokenIO : public GIO {
public:
    long gseek(long, IOSeekDirection) override { return 0; }
    long gwrite(const void*, long) override { throw GStreamException("broken"); }
    long gread(void*, long) override { throw GStreamException("broken"); }
    void flush() override {}
};

class DeviceWriter : public opstream {
public:
    explicit DeviceWriter(GIO* io) : buffered_(io, 64) { init(&buffered_); }

private:
    GBufferedIO buffered_;
};

struct FreeText {
    void operator()(char* text) const { gfreestr(text); }
};
using Text = std::unique_ptr<char, FreeText>;

}  // namespace

TEST(TypedStream, Numbers_OfEveryWidth_ComeBack)
{
    ompstream out;
    out.writeByte(0xFE);
    out.writeWord(0xFEDC);
    out.writeDWord(0xFEDCBA98UL);
    out.writeQWord(0xFEDCBA9876543210u);
    out.writeFloat(1.5f);
    out.writeDouble(-0.1);
    out << std::int32_t{-5} << std::uint32_t{7} << std::uint16_t{9};
    impstream in(out.bytes());

    EXPECT_EQ(in.readByte(), 0xFE);
    EXPECT_EQ(in.readWord(), 0xFEDC);
    EXPECT_EQ(in.readDWord(), 0xFEDCBA98UL);
    EXPECT_EQ(in.readQWord(), 0xFEDCBA9876543210u);
    EXPECT_EQ(in.readFloat(), 1.5f);
    EXPECT_EQ(in.readDouble(), -0.1);
    std::int32_t negative = 0;
    std::uint32_t wide = 0;
    std::uint16_t narrow = 0;
    in >> negative >> wide >> narrow;
    EXPECT_EQ(negative, -5);
    EXPECT_EQ(wide, 7u);
    EXPECT_EQ(narrow, 9);
    EXPECT_EQ(in.remaining(), 0);
    EXPECT_TRUE(in.good());
}

TEST(TypedStream, Numbers_AreLittleEndianAndOfFixedWidth)
{
    ompstream out;
    out.writeWord(0x0102);
    out.writeDWord(0x03040506UL);
    out.writeQWord(0x0708090A0B0C0D0Eu);
    const std::vector<unsigned char> expected = {2,   1,   6,   5,   4, 3, 0xE,
                                                 0xD, 0xC, 0xB, 0xA, 9, 8, 7};

    EXPECT_EQ(copy_of(out), expected);
    EXPECT_EQ(out.tellp(), 14);
}

TEST(TypedStream, WriteDWord_ValueWiderThan32Bits_LowBitsAreWritten)
{
    ompstream out;
    out.writeDWord(static_cast<unsigned long>(-1L));
    impstream in(out.bytes());

    EXPECT_EQ(out.tellp(), 4);
    EXPECT_EQ(in.readDWord(), 0xFFFFFFFFUL);
}

TEST(TypedStream, Strings_OfEveryKindOfLength_ComeBack)
{
    for (const std::size_t length :
         {0u, 1u, 252u, 253u, 254u, 255u, 256u, 65535u, 65536u, 200000u}) {
        const std::string text(length, 'q');
        ompstream out;
        out.writeString(text.c_str());
        out.writeByte(1);
        impstream in(out.bytes());

        const Text back(in.readString());
        EXPECT_EQ(back.get(), text);
        EXPECT_EQ(in.readByte(), 1);
    }
}

TEST(TypedStream, NullString_IsKeptApartFromTheEmptyOne)
{
    ompstream out;
    out.writeString(nullptr);
    out.writeString("");
    impstream in(out.bytes());

    EXPECT_EQ(in.readString(), nullptr);
    const Text empty(in.readString());
    ASSERT_NE(empty, nullptr);
    EXPECT_STREQ(empty.get(), "");
}

TEST(TypedStream, Text_WithZeroBytes_ComesBackWhole)
{
    const std::string_view text("a\0b\0", 4);
    ompstream out;
    out.write_text(text);
    out << GString("after");
    impstream in(out.bytes());
    GString first;
    GString second;
    in.read_text(first);
    in >> second;

    EXPECT_EQ(first.view(), text);
    EXPECT_EQ(second, "after");
}

TEST(TypedStream, ReadText_OfNullString_GivesEmptyText)
{
    ompstream out;
    out.writeString(nullptr);
    impstream in(out.bytes());
    GString text("former");
    in.read_text(text);

    EXPECT_TRUE(text.is_empty());
}

TEST(TypedStream, ReadText_DataIsCut_KeepsTheFormerText)
{
    ompstream out;
    out.write_text("much longer than what is left");
    impstream in(out.bytes().first(10));
    GString text("former");

    EXPECT_THROW(in.read_text(text), GStreamException);
    EXPECT_EQ(text, "former");
}

TEST(TypedStream, ClassReferences_NullKnownAndUnknown_ComeBack)
{
    ompstream out;
    const GMetaClass* none = nullptr;
    out << &SampleLeaf::metaclass_ << none;
    out.writeString("NoSuchClassAtAll");
    impstream in(out.bytes());
    const GMetaClass* first = nullptr;
    const GMetaClass* second = &SampleNode::metaclass_;
    const GMetaClass* third = &SampleNode::metaclass_;
    in >> first >> second >> third;

    EXPECT_EQ(first, &SampleLeaf::metaclass_);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(third, nullptr);
}

TEST(TypedStream, TypedReaders_CutAtEveryLength_ThrowAndSetEndAndFail)
{
    ompstream out;
    out.writeByte(1);
    out.writeWord(2);
    out.writeDWord(3);
    out.writeQWord(4);
    out.writeDouble(5.0);
    out.writeFloat(6.0f);
    out.writeString("seven");
    out.writeString(std::string(300, '8').c_str());
    const auto bytes = out.bytes();

    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const std::vector<unsigned char> cut(bytes.begin(),
                                             bytes.begin() + static_cast<std::ptrdiff_t>(length));
        impstream in{std::span<const unsigned char>(cut)};
        EXPECT_THROW(
            {
                static_cast<void>(in.readByte());
                static_cast<void>(in.readWord());
                static_cast<void>(in.readDWord());
                static_cast<void>(in.readQWord());
                static_cast<void>(in.readDouble());
                static_cast<void>(in.readFloat());
                const Text first(in.readString());
                const Text second(in.readString());
            },
            GStreamException)
            << length;
        EXPECT_EQ(in.state(), pstream::kEnd | pstream::kFail) << length;
    }
}

TEST(TypedStream, ReadBytes_AtTheEnd_GivesShortCountAndSetsEndAndFail)
{
    const unsigned char bytes[] = {1, 2, 3};
    impstream in{std::span(bytes)};
    unsigned char target[8] = {};

    EXPECT_EQ(in.readBytes(target, 8), 3);
    EXPECT_EQ(target[2], 3);
    EXPECT_EQ(in.state(), 3);
    EXPECT_TRUE(in.eof());
    EXPECT_TRUE(in.fail());
    EXPECT_FALSE(in.bad());
    in.clear();
    EXPECT_EQ(in.readBytes(target, 1), 0);
    EXPECT_EQ(in.state(), 3);
}

TEST(TypedStream, SkipBytes_WithinAndBeyond_MovesOrSetsEndAndFail)
{
    std::vector<unsigned char> bytes(5000);
    bytes[4000] = 9;
    impstream in{std::span<const unsigned char>(bytes)};
    in.skipBytes(4000);
    EXPECT_EQ(in.readByte(), 9);
    EXPECT_TRUE(in.good());
    in.skipBytes(1000);

    EXPECT_EQ(in.state(), 3);
}

TEST(TypedStream, Seekg_ByEveryDirection_GivesThePosition)
{
    const unsigned char bytes[] = {0, 1, 2, 3, 4, 5};
    impstream in{std::span(bytes)};

    EXPECT_EQ(in.seekg(4, GIO::SeekBegin), 4);
    EXPECT_EQ(in.readByte(), 4);
    EXPECT_EQ(in.seekg(-2, GIO::SeekCurrent), 3);
    EXPECT_EQ(in.readByte(), 3);
    EXPECT_EQ(in.seekg(-1, GIO::SeekEnd), 5);
    EXPECT_EQ(in.readByte(), 5);
    EXPECT_EQ(in.tellg(), 6);
}

TEST(TypedStream, Seekg_OutsideTheData_GivesMinusOneAndSetsFail)
{
    const unsigned char bytes[] = {0, 1};
    impstream in{std::span(bytes)};

    EXPECT_EQ(in.seekg(-1, GIO::SeekBegin), -1);
    EXPECT_EQ(in.state(), pstream::kFail);
    in.clear();
    EXPECT_EQ(in.seekg(3, GIO::SeekBegin), -1);
    EXPECT_EQ(in.seekg(std::numeric_limits<long>::min(), GIO::SeekCurrent), -1);
    EXPECT_EQ(in.seekg(std::numeric_limits<long>::max(), GIO::SeekEnd), -1);
    in.clear();
    EXPECT_EQ(in.readByte(), 0);
}

TEST(TypedStream, NeverInitialised_IsBadAndThrowsButDoesNotCrash)
{
    NakedStream stream;
    unsigned char byte = 0;

    EXPECT_EQ(stream.state(), pstream::kBad);
    EXPECT_THROW(static_cast<void>(stream.readByte()), GStreamException);
    EXPECT_THROW(static_cast<void>(stream.readDWord()), GStreamException);
    EXPECT_THROW(static_cast<void>(stream.readString()), GStreamException);
    EXPECT_THROW(stream.readPointer(GStreamable::gTypeInfo_), GStreamException);
    EXPECT_THROW(stream.writeByte(1), GStreamException);
    EXPECT_THROW(stream.writeString("text"), GStreamException);
    EXPECT_THROW(stream.writePointer(nullptr), GStreamException);
    EXPECT_EQ(stream.readBytes(&byte, 1), 0);
    EXPECT_EQ(stream.writeBytes(&byte, 1), 0);
    EXPECT_EQ(stream.seekg(0, GIO::SeekBegin), -1);
    stream.skipBytes(1);
    stream.clear();
    EXPECT_THROW(static_cast<void>(stream.readByte()), GStreamException);
    EXPECT_THROW(stream.writeByte(1), GStreamException);
}

TEST(TypedStream, WhileBad_TypedOperationsThrowEvenWithDataLeft)
{
    const unsigned char bytes[] = {1, 2};
    impstream in{std::span(bytes)};
    in.clear(pstream::kBad);
    EXPECT_THROW(static_cast<void>(in.readByte()), GStreamException);
    in.clear();

    EXPECT_EQ(in.readByte(), 1);
}

TEST(TypedStream, DeviceFailsOnReading_ExceptionGoesOnAndStreamIsBad)
{
    DeviceReader in(new BrokenIO);

    EXPECT_THROW(static_cast<void>(in.readByte()), GStreamException);
    EXPECT_TRUE(in.bad());
    unsigned char byte = 0;
    EXPECT_EQ(in.readBytes(&byte, 1), 0);
}

TEST(TypedStream, DeviceFailsOnWriting_ExceptionGoesOnAndStreamIsBad)
{
    DeviceWriter out(new BrokenIO);
    const std::vector<unsigned char> bytes(1000);
    out.writeByte(1);

    EXPECT_THROW(out.writeBytes(bytes.data(), 1000), GStreamException);
    EXPECT_TRUE(out.bad());
    EXPECT_THROW(out.writeByte(1), GStreamException);
    EXPECT_EQ(out.writeBytes(bytes.data(), 1000), 0);
}

TEST(TypedStream, FalseStringLength_LengthKnown_ThrowsWithoutAllocating)
{
    const unsigned char bytes[] = {254, 0xFF, 0xFF, 0xFF, 0x0F, 'a', 'b'};  // says 2^28 - 1
    impstream in{std::span(bytes)};

    EXPECT_THROW(static_cast<void>(in.readString()), GStreamException);
}

TEST(TypedStream, FalseStringLength_LengthUnknown_ThrowsAtTheEndOfTheData)
{
    const std::vector<unsigned char> bytes = {254, 0xFF, 0xFF, 0xFF, 0x0F, 'a', 'b'};
    DeviceReader in(new PipeIO(bytes));

    EXPECT_THROW(static_cast<void>(in.readString()), GStreamException);
}

TEST(TypedStream, StringLongerThanTheCap_IsMalformed)
{
    ompstream out;
    out.writeByte(254);
    out.writeDWord(ipstream::kMaxStringBytes + 1);
    impstream in(out.bytes());

    EXPECT_THROW(static_cast<void>(in.readString()), GStreamException);
}

TEST(TypedStream, LongTextFromDeviceThatCantSeek_ComesBackWhole)
{
    const std::string text(300'000, 'z');
    ompstream out;
    out.writeString(text.c_str());
    out.writeString(text.c_str());
    out.writeByte(3);
    DeviceReader in(new PipeIO(copy_of(out)));

    const Text first(in.readString());
    GString second;
    in.read_text(second);
    EXPECT_EQ(first.get(), text);
    EXPECT_EQ(second.view(), text);
    EXPECT_EQ(in.readByte(), 3);
    EXPECT_EQ(in.remaining(), -1);
}

TEST(TypedStream, SkipBytes_OnDeviceThatCantSeek_ReadsOn)
{
    std::vector<unsigned char> bytes(5000);
    bytes[4000] = 9;
    DeviceReader in(new PipeIO(bytes));
    in.skipBytes(4000);

    EXPECT_EQ(in.readByte(), 9);
    EXPECT_EQ(in.tellg(), 4001);
    EXPECT_EQ(in.seekg(0, GIO::SeekBegin), -1);
}

TEST(TypedStream, ReadBlock_WholeAndCut)
{
    std::vector<unsigned char> bytes(200'000);
    bytes.back() = 5;
    impstream whole{std::span<const unsigned char>(bytes)};
    const auto block = whole.read_block(bytes.size());
    EXPECT_EQ(block[bytes.size() - 1], 5);

    DeviceReader piped(new PipeIO(bytes));
    const auto same = piped.read_block(bytes.size());
    EXPECT_EQ(same[bytes.size() - 1], 5);

    impstream cut{std::span<const unsigned char>(bytes)};
    EXPECT_THROW(cut.read_block(bytes.size() + 1), GStreamException);
    DeviceReader cut_pipe(new PipeIO(bytes));
    EXPECT_THROW(cut_pipe.read_block(std::size_t{1} << 40), GStreamException);
}

TEST(TypedStream, MemoryReader_OverNullOrNothing_IsAtItsEnd)
{
    impstream null_block(nullptr, 10);
    EXPECT_THROW(static_cast<void>(null_block.readByte()), GStreamException);
    impstream empty{std::span<const unsigned char>()};
    EXPECT_EQ(empty.remaining(), 0);
    EXPECT_THROW(static_cast<void>(empty.readString()), GStreamException);
    unsigned char byte = 1;
    impstream not_for_reading(&byte, 1, GIO::OpenWrite);

    EXPECT_TRUE(not_for_reading.bad());
}

TEST(TypedStream, MemoryWriter_Grows_DataAndTellpGiveTheBlock)
{
    ompstream out;
    EXPECT_EQ(out.tellp(), 0);
    EXPECT_TRUE(out.bytes().empty());
    for (int number = 0; number < 100'000; ++number)
        out.writeDWord(static_cast<unsigned long>(number));
    const std::vector<unsigned char> large(1'000'000, 7);
    EXPECT_EQ(out.writeBytes(large.data(), 1'000'000), 1'000'000);

    ASSERT_EQ(out.tellp(), 1'400'000);
    impstream in(out.data(), out.tellp());
    for (unsigned long number = 0; number < 100'000; ++number)
        ASSERT_EQ(in.readDWord(), number);
    EXPECT_EQ(in.remaining(), 1'000'000);
}

TEST(TypedStream, SpecialDoubles_ComeBackBitForBit)
{
    const double numbers[] = {0.0, -0.0, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::denorm_min(),
                              std::numeric_limits<double>::quiet_NaN()};
    ompstream out;
    for (const double number : numbers)
        out.writeDouble(number);
    impstream in(out.bytes());

    for (const double number : numbers)
        EXPECT_EQ(std::bit_cast<std::uint64_t>(in.readDouble()),
                  std::bit_cast<std::uint64_t>(number));
}
