#include "graphics/ImageHead.h"

#include <algorithm>

namespace zmr {
namespace {

/// Where the values of one entry lie. Without the entry `count` is 0.
struct TiffField {
    std::uint64_t place = 0;
    std::uint32_t count = 0;
    std::uint32_t width = 1;  ///< Bytes of one value.
};

/// The first directory of a TIFF structure.
class TiffDirectory {
public:
    explicit TiffDirectory(ByteView bytes)
        : bytes_(bytes), big_endian_(bytes.u8(0) == 'M'), start_(u32(4)), count_(u16(start_))
    {
    }

    [[nodiscard]] bool is_whole() const
    {
        return start_ >= 8 && count_ > 0 && bytes_.has(start_, 2 + count_ * kEntryBytes + 4);
    }
    [[nodiscard]] TiffField find(std::uint32_t tag) const
    {
        for (std::uint64_t index = 0; index < count_; ++index) {
            const std::uint64_t entry = start_ + 2 + index * kEntryBytes;
            if (!bytes_.has(entry, kEntryBytes))
                break;
            if (u16(entry) != tag)
                continue;
            const std::uint32_t type = u16(entry + 2);
            TiffField field;
            field.count = u32(entry + 4);
            field.width = type == 4 ? 4 : type == 3 ? 2 : 1;  // 32 bits, 16 bits, bytes
            const bool inside = std::uint64_t{field.count} * field.width <= 4;
            field.place = inside ? entry + 8 : u32(entry + 8);
            return field;
        }
        return {};
    }
    [[nodiscard]] bool has_all(const TiffField& field) const
    {
        return bytes_.has(field.place, std::uint64_t{field.count} * field.width);
    }
    /// Value `index` of an entry of whole numbers, or `missing`.
    [[nodiscard]] std::uint32_t value(const TiffField& field, std::uint32_t index,
                                      std::uint32_t missing) const
    {
        if (index >= field.count)
            return missing;
        const std::uint64_t place = field.place + std::uint64_t{index} * field.width;
        return field.width == 4 ? u32(place) : field.width == 2 ? u16(place) : bytes_.u8(place);
    }

private:
    static constexpr std::uint64_t kEntryBytes = 12;

    [[nodiscard]] std::uint32_t u16(std::uint64_t position) const
    {
        return big_endian_ ? bytes_.be16(position) : bytes_.le16(position);
    }
    [[nodiscard]] std::uint32_t u32(std::uint64_t position) const
    {
        return big_endian_ ? bytes_.be32(position) : bytes_.le32(position);
    }

    ByteView bytes_;
    bool big_endian_;
    std::uint64_t start_;
    std::uint64_t count_;
};

constexpr std::uint32_t kWidth = 256;
constexpr std::uint32_t kHeight = 257;
constexpr std::uint32_t kCompression = 259;
constexpr std::uint32_t kStripOffsets = 273;
constexpr std::uint32_t kOrientation = 274;
constexpr std::uint32_t kStripByteCounts = 279;
constexpr std::uint32_t kColorMap = 320;
constexpr std::uint32_t kTileOffsets = 324;
constexpr std::uint32_t kTileByteCounts = 325;
constexpr std::uint32_t kExtraSamples = 338;

int orientation_of(const TiffDirectory& directory)
{
    const std::uint32_t value = directory.value(directory.find(kOrientation), 0, 1);
    return value >= 1 && value <= 8 ? static_cast<int>(value) : 1;
}

}  // namespace

int tiff_orientation(ByteView bytes)
{
    const std::uint32_t mark = bytes.be32(0);
    if (mark != 0x49492a00 && mark != 0x4d4d002a)
        return 1;
    return orientation_of(TiffDirectory(bytes));
}

ImageHead read_tiff_head(ByteView bytes)
{
    const TiffDirectory directory(bytes);
    if (!directory.is_whole())
        refuse_image("the TIFF data ends too early");
    ImageHead head;
    head.width = directory.value(directory.find(kWidth), 0, 0);
    head.height = directory.value(directory.find(kHeight), 0, 0);
    head.orientation = orientation_of(directory);
    // A fourth sample of unspecified meaning is not taken for alpha.
    const std::uint32_t extra = directory.value(directory.find(kExtraSamples), 0, 0);
    head.alpha = extra == 1 || extra == 2;
    head.premultiplied = extra == 1;

    const bool tiled = directory.find(kTileOffsets).count > 0;
    const TiffField offsets = directory.find(tiled ? kTileOffsets : kStripOffsets);
    const TiffField lengths = directory.find(tiled ? kTileByteCounts : kStripByteCounts);
    const std::uint32_t parts = offsets.count;
    if (parts == 0)
        refuse_image("the TIFF data holds no picture");
    // Each part has an offset of its own in the file, which bounds the loop.
    if (parts > bytes.size() || lengths.count < parts)
        refuse_image("the TIFF data is damaged");
    if (!directory.has_all(directory.find(kColorMap)))
        refuse_image("the TIFF data ends too early");
    std::uint64_t data_bytes = 0;
    for (std::uint32_t part = 0; part < parts; ++part) {
        const std::uint64_t length = directory.value(lengths, part, 0);
        if (length == 0 || !bytes.has(directory.value(offsets, part, 0), length))
            refuse_image("the TIFF data ends too early");
        data_bytes = std::min(data_bytes + length, bytes.size());
    }
    // Deflate of two-level rows is the densest of the usual kinds. A blank fax row costs a bit,
    // which lets a white page at 600 dots per inch come near 2^16 pixels a byte.
    const std::uint32_t compression = directory.value(directory.find(kCompression), 0, 1);
    const bool fax = compression >= 2 && compression <= 4;
    head.max_pixels = data_bytes * (fax ? 65536 : 1040 * 8);
    return head;
}

}  // namespace zmr
