#include "foundation/ipstream.h"

#include "foundation/GException.h"
#include "foundation/GString.h"
#include "foundation/HeapBlock.h"
#include "foundation/StreamFormat.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

/// What is read at once where nobody knows how much is left.
constexpr std::size_t kPieceBytes = 64 * 1024;

struct FreeBlock {
    void operator()(char* block) const { std::free(block); }
};
using OwnedText = std::unique_ptr<char, FreeBlock>;

}  // namespace

long ipstream::readBytes(void* data, long size)
{
    if (size <= 0)
        return 0;
    if (const unsigned char* bytes = in_->take(static_cast<std::size_t>(size))) {
        std::memcpy(data, bytes, static_cast<std::size_t>(size));
        return size;
    }
    const long done = on_device([&] { return in_->gread(data, size); });
    if (done < size)
        add_state(kEnd | kFail);
    return done;
}

void ipstream::skipBytes(long size)
{
    if (size <= 0 || in_->take(static_cast<std::size_t>(size)) != nullptr)
        return;
    const long left = remaining();
    if (left >= 0) {
        const long part = std::min(size, left);
        if (on_device([&] { return in_->gseek(part, GIO::SeekCurrent); }) >= 0) {
            if (part < size)
                add_state(kEnd | kFail);
            return;
        }
    }
    unsigned char passed[1024];
    while (size > 0) {
        const long part = std::min<long>(size, sizeof passed);
        if (readBytes(passed, part) < part)
            return;
        size -= part;
    }
}

long ipstream::seekg(long offset, GIO::IOSeekDirection direction)
{
    const long reached = on_device([&] { return in_->gseek(offset, direction); });
    if (reached < 0)
        add_state(kFail);
    return reached;
}

long ipstream::tellg()
{
    return on_device([&] { return in_->gtell(); });
}

long ipstream::remaining()
{
    return on_device([&] { return in_->remaining(); });
}

void ipstream::read_exactly(void* data, std::size_t size)
{
    require_device();
    auto* bytes = static_cast<unsigned char*>(data);
    constexpr std::size_t kLargest = std::numeric_limits<long>::max();
    while (size > 0) {
        const auto part = static_cast<long>(std::min(size, kLargest));
        const long done = on_device([&] { return in_->gread(bytes, part); });
        if (done < part) {
            add_state(kEnd | kFail);
            throw GStreamException("A stream's data ends too early.");
        }
        bytes += part;
        size -= static_cast<std::size_t>(part);
    }
}

/// Throws when it is known that fewer than `size` bytes are left.
void ipstream::require_left(std::size_t size)
{
    require_device();
    const long left = remaining();
    if (left >= 0 && size > static_cast<std::size_t>(left)) {
        add_state(kEnd | kFail);
        throw GStreamException("A length in a stream is larger than the data that is left.");
    }
}

std::unique_ptr<unsigned char[]> ipstream::read_block(std::size_t size)
{
    if (const unsigned char* bytes = in_->take(size)) {
        auto block = std::make_unique_for_overwrite<unsigned char[]>(size);
        std::memcpy(block.get(), bytes, size);
        return block;
    }
    require_left(size);
    std::size_t room = remaining() >= 0 ? size : std::min(size, kPieceBytes);
    auto block = std::make_unique_for_overwrite<unsigned char[]>(room);
    std::size_t done = 0;
    while (true) {
        read_exactly(block.get() + done, room - done);
        done = room;
        if (done == size)
            return block;
        room = std::min(size, 2 * room);
        auto larger = std::make_unique_for_overwrite<unsigned char[]>(room);
        std::memcpy(larger.get(), block.get(), done);
        block = std::move(larger);
    }
}

/// Reads a string's length; false for a null string.
bool ipstream::read_length(std::uint32_t& length)
{
    length = readByte();
    if (length < zmr::kLongString)
        return true;
    if (length == zmr::kNullString)
        return false;
    length = read_value<std::uint32_t>();
    if (length > kMaxStringBytes)
        throw GStreamException("A text in a stream is longer than any may be.");
    return true;
}

char* ipstream::readString()
{
    std::uint32_t length = 0;
    if (!read_length(length))
        return nullptr;
    OwnedText text;
    if (const unsigned char* bytes = in_->take(length)) {
        text.reset(static_cast<char*>(zmr::allocate_block(std::size_t{length} + 1)));
        std::memcpy(text.get(), bytes, length);
    } else {
        require_left(length);
        std::size_t done = 0;
        do {  // in growing pieces: a false length costs no memory
            const std::size_t piece =
                std::min<std::size_t>(length - done, std::max(done, kPieceBytes));
            void* larger = zmr::resize_block(text.get(), done + piece + 1);
            static_cast<void>(text.release());
            text.reset(static_cast<char*>(larger));
            read_exactly(text.get() + done, piece);
            done += piece;
        } while (done < length);
    }
    text.get()[length] = '\0';
    return text.release();
}

void ipstream::read_text(GString& target)
{
    std::uint32_t length = 0;
    if (!read_length(length)) {
        target.empty();
        return;
    }
    if (const unsigned char* bytes = in_->take(length)) {
        target.assign(reinterpret_cast<const char*>(bytes), length);
        return;
    }
    const auto block = read_block(length);
    target.assign(reinterpret_cast<const char*>(block.get()), length);
}

ipstream& ipstream::operator>>(const GMetaClass*& metaclass)
{
    const OwnedText name(readString());
    metaclass = name == nullptr ? nullptr : find_class(name.get());
    return *this;
}

const GMetaClass* ipstream::find_class(const char* name)
{
    return GMetaClass::FindByName(name);
}

void ipstream::buffer_changed(GAbstractBufferedIO* buffer)
{
    in_ = buffer;
}
