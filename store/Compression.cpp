#include "store/Compression.h"

#include "store/LibraryFormat.h"

#include <algorithm>
#include <array>
#include <cstdint>

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

/// True when nothing in `bytes`, which are the probe's, hints that deflating would save an eighth:
/// all byte values are about as frequent, and few runs of four bytes come twice. Spares pictures
/// and packed meshes the deflater, which costs ten times as much as this.
bool looks_like_noise(std::string_view bytes)
{
    std::array<std::uint32_t, 256> counts{};
    std::array<std::uint16_t, 1024> last_at{};
    std::size_t repeats = 0;
    std::uint64_t size = 0;  // of the sample: every fourth byte
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4, ++size) {
        ++counts[static_cast<unsigned char>(bytes[i])];
        const std::uint32_t word = load_u32(bytes.data() + i);
        std::uint16_t& slot = last_at[word * 2654435761u >> 22];
        if (slot > 0 && load_u32(bytes.data() + slot - 1) == word)
            ++repeats;
        slot = static_cast<std::uint16_t>(i + 1);
    }
    // The chance that two bytes are the same: 1/256 for noise, twice that at seven bits a byte.
    std::uint64_t pairs = 0;
    for (const std::uint32_t count : counts)
        pairs += std::uint64_t{count} * count;
    return pairs < size * size * 3 / 512 + size && repeats * 32 < size;
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
    if (fits && !looks_like_noise(bytes.substr(0, kProbeBytes)) &&
        deflate(bytes.substr(0, kProbeBytes), deflated) &&
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
