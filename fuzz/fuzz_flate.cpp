#include "foundation/GException.h"
#include "foundation/GFlateBufferedIO.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

// The compressing layer: whatever is written comes back, and whatever is read ends in bytes or in
// an exception. The first byte chooses which; the second the sizes of the pieces.

namespace {

class BytesIO : public GIO {
public:
    explicit BytesIO(std::vector<unsigned char>& bytes) : bytes_(bytes) {}
    long gseek(long offset, IOSeekDirection direction) override
    {
        const auto size = static_cast<long>(bytes_.size());
        const long from = direction == SeekBegin ? 0 : direction == SeekCurrent ? at_ : size;
        at_ = std::clamp(from + offset, 0L, size);
        return at_;
    }
    long gwrite(const void* data, long size) override
    {
        const auto* from = static_cast<const unsigned char*>(data);
        bytes_.resize(static_cast<std::size_t>(at_));
        bytes_.insert(bytes_.end(), from, from + size);
        at_ += size;
        return size;
    }
    long gread(void* data, long size) override
    {
        size = std::min(size, static_cast<long>(bytes_.size()) - at_);
        if (size > 0)
            std::memcpy(data, bytes_.data() + at_, static_cast<std::size_t>(size));
        at_ += size;
        return size;
    }
    void flush() override {}

private:
    std::vector<unsigned char>& bytes_;
    long at_ = 0;
};

std::unique_ptr<GFlateBufferedIO> layer_over(std::vector<unsigned char>& bytes, int level)
{
    return std::make_unique<GFlateBufferedIO>(new GBufferedIO(new BytesIO(bytes), 64), level);
}

/// Packed data may grow a thousandfold: the first MiB of it is enough.
constexpr long kMostUnpacked = 1 << 20;

void read_hostile(std::span<const std::uint8_t> data, long piece)
{
    std::vector<unsigned char> device(data.begin(), data.end());
    std::vector<unsigned char> target(static_cast<std::size_t>(piece));
    try {
        const auto io = layer_over(device, 4);
        long total = 0;
        while (const long count = io->gread(target.data(), piece)) {
            total += count;
            if (io->gtell() != total)
                std::abort();
            if (total > kMostUnpacked)
                break;
        }
        if (io->gseek(total / 2, GIO::SeekBegin) != total / 2)
            std::abort();
        static_cast<void>(io->gread(target.data(), piece));
    } catch (const GStreamException&) {
    }
}

void round_trip(std::span<const std::uint8_t> data, long piece)
{
    std::vector<unsigned char> device;
    const auto size = static_cast<long>(data.size());
    {
        const auto io = layer_over(device, static_cast<int>(piece % 11));
        for (long at = 0; at < size; at += piece) {
            io->gwrite(data.data() + at, std::min(piece, size - at));
            if (at % 3 == 0)
                io->flush();
        }
    }
    std::vector<unsigned char> back(data.size() + 1);
    const long count = layer_over(device, 4)->gread(back.data(), size + 1);
    if (count != size || !std::equal(data.begin(), data.end(), back.begin()))
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    if (size < 2)
        return 0;
    const long piece = 1 + 5L * bytes[1];
    const std::span<const std::uint8_t> data(bytes + 2, size - 2);
    if (bytes[0] % 4 == 0)
        round_trip(data, piece);
    else
        read_hostile(data, piece);
    return 0;
}
