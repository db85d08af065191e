#include "store/Compression.h"

#include "store/LibraryFormat.h"

#include <algorithm>

#include <zlib.h>

namespace zmr {
namespace {

constexpr std::size_t kLeastBytes = 1024;
constexpr std::size_t kProbeBytes = 2048;
constexpr int kLevel = 4;  // half the time of the default for a twentieth more bytes

bool saves_an_eighth(std::size_t before, std::size_t after)
{
    return after <= before - before / 8;
}

bool deflate(std::string_view bytes, std::string& deflated)
{
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    deflated.resize(size);
    if (compress2(reinterpret_cast<Bytef*>(deflated.data()), &size,
                  reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uLong>(bytes.size()),
                  kLevel) != Z_OK)
        return false;
    deflated.resize(size);
    return saves_an_eighth(bytes.size(), deflated.size());
}

/// Ends an inflater when the scope does.
struct Inflater {
    z_stream stream = {};
    ~Inflater() { inflateEnd(&stream); }
};

}  // namespace

bool deflate_if_worth_it(std::string_view bytes, std::string& deflated)
{
    const bool fits = bytes.size() >= kLeastBytes && bytes.size() <= kMaxInflatedBytes;
    if (fits && deflate(bytes.substr(0, kProbeBytes), deflated) &&
        (bytes.size() <= kProbeBytes || deflate(bytes, deflated)))
        return true;
    deflated.clear();
    return false;
}

bool inflate_whole(std::string_view deflated, std::uint64_t length, std::string& bytes)
{
    bytes.clear();
    if (length > kMaxInflatedBytes)
        return false;
    Inflater inflater;
    z_stream& stream = inflater.stream;
    if (inflateInit(&stream) != Z_OK)
        return false;
    // zlib only reads from next_in.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(deflated.data()));
    stream.avail_in = static_cast<uInt>(deflated.size());
    constexpr std::size_t kPieceBytes = 256 * 1024;
    int result = Z_OK;
    while (result == Z_OK) {
        const std::size_t before = bytes.size();
        // One byte more than is due shows a stream that is too long.
        const std::size_t room =
            std::min<std::size_t>(kPieceBytes, static_cast<std::size_t>(length) - before + 1);
        bytes.resize(before + room);
        stream.next_out = reinterpret_cast<Bytef*>(bytes.data() + before);
        stream.avail_out = static_cast<uInt>(room);
        result = inflate(&stream, Z_NO_FLUSH);
        bytes.resize(before + room - stream.avail_out);
        if (bytes.size() > length)
            break;
    }
    if (result == Z_STREAM_END && bytes.size() == length && stream.avail_in == 0)
        return true;
    bytes.clear();
    return false;
}

}  // namespace zmr
