#include "scene_editor/IconImages.h"

#include "platform/HandlesGdi.h"
#include "platform/HandlesUser.h"
#include "scene_editor/core/BuiltInPictures.h"

#include <vector>

namespace {

// An icon keeps alpha through image lists and drawing of every kind.
zmr::OwnedIcon icon_of(const PixelMap& picture)
{
    const int width_px = picture.get_width();
    const int height_px = picture.get_height();
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width_px;
    info.bmiHeader.biHeight = -height_px;  // the top row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const zmr::OwnedBitmap color(
        ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    // Rows of the mask fill whole words.
    const std::size_t mask_row_bytes = static_cast<std::size_t>((width_px + 15) / 16) * 2;
    std::vector<unsigned char> mask_bits(mask_row_bytes * static_cast<std::size_t>(height_px), 0);
    if (!color)
        return {};
    auto* pixel = static_cast<unsigned char*>(bits);
    for (int y = 0; y < height_px; ++y) {
        for (int x = 0; x < width_px; ++x, pixel += 4) {
            const RGB_Color shade = picture.get_pixel(x, y);
            pixel[0] = shade.blue;
            pixel[1] = shade.green;
            pixel[2] = shade.red;
            pixel[3] = picture.get_alpha(x, y);
            if (pixel[3] == 0) {
                mask_bits[mask_row_bytes * static_cast<std::size_t>(y) +
                          static_cast<std::size_t>(x) / 8] |=
                    static_cast<unsigned char>(0x80 >> (x % 8));
            }
        }
    }
    const zmr::OwnedBitmap mask(::CreateBitmap(width_px, height_px, 1, 1, mask_bits.data()));
    ICONINFO icon{};
    icon.fIcon = TRUE;
    icon.hbmMask = mask.get();
    icon.hbmColor = color.get();
    return zmr::OwnedIcon(::CreateIconIndirect(&icon));
}

}  // namespace

bool IconImages::create(int size_px, int margin_px, int count)
{
    size_px_ = size_px;
    margin_px_ = margin_px;
    const int width_px = size_px + 2 * margin_px;
    if (!list_.Create(width_px, size_px, ILC_COLOR32 | ILC_MASK, count, 1))
        return false;
    const PixelMap empty(width_px, size_px, AbstractImage::Format32, nullptr);
    const zmr::OwnedIcon icon = icon_of(empty);
    for (int i = 0; i < count; ++i) {
        if (list_.Add(icon.get()) < 0)
            return false;
    }
    return true;
}

void IconImages::set(int index, const PixelMap& picture)
{
    const zmr::OwnedIcon icon =
        icon_of(editor::in_middle(picture, size_px_, size_px_ + 2 * margin_px_));
    if (icon)
        list_.Replace(index, icon.get());
}
