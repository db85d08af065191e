#include "scene_editor/core/BuiltInPictures.h"

#include "graphics/PixelMapTools.h"

#include <algorithm>
#include <memory>

namespace editor {

namespace {

constexpr int kFine = 8;  // each pixel is the mean of so many squared

// A square to draw on in parts of 32 a side, which is made smaller at the end.
class Drawing {
public:
    explicit Drawing(int size_px)
        : size_px_(size_px),
          fine_(size_px * kFine, size_px * kFine, AbstractImage::Format32, nullptr)
    {
    }
    void fill(double left, double top, double right, double bottom, const RGB_Color& color)
    {
        for (int y = at(top); y < at(bottom); ++y) {
            for (int x = at(left); x < at(right); ++x)
                fine_.set_pixel(x, y, color);
        }
    }
    [[nodiscard]] PixelMap finish() const
    {
        const std::unique_ptr<PixelMap> smooth(
            PixelMapTools::Resize(fine_, size_px_, size_px_, true));
        return smooth != nullptr ? *smooth : fine_;
    }

private:
    [[nodiscard]] int at(double part) const
    {
        return static_cast<int>(part * size_px_ * kFine / 32.0 + 0.5);
    }

    int size_px_;
    PixelMap fine_;
};

constexpr RGB_Color kFolderBack{208, 152, 58};
constexpr RGB_Color kFolderFront{245, 200, 110};
constexpr RGB_Color kFolderEdge{175, 120, 40};
constexpr RGB_Color kPaper{246, 248, 250};
constexpr RGB_Color kPaperEdge{142, 150, 160};
constexpr RGB_Color kPaperText{192, 198, 205};

}  // namespace

PixelMap directory_picture(int size_px)
{
    Drawing drawing(size_px);
    drawing.fill(2, 6, 13, 10, kFolderBack);
    drawing.fill(2, 8, 30, 27, kFolderEdge);
    drawing.fill(3, 9, 29, 26, kFolderBack);
    drawing.fill(3, 12, 29, 26, kFolderFront);
    return drawing.finish();
}

PixelMap entry_picture(int size_px)
{
    Drawing drawing(size_px);
    drawing.fill(6, 3, 26, 29, kPaperEdge);
    drawing.fill(7, 4, 25, 28, kPaper);
    for (const double line : {9.0, 14.0, 19.0})
        drawing.fill(10, line, 22, line + 2, kPaperText);
    return drawing.finish();
}

PixelMap in_middle(const PixelMap& picture, int size_px, int width_px)
{
    PixelMap area(width_px, size_px, AbstractImage::Format32, nullptr);
    const int longer = std::max(picture.get_width(), picture.get_height());
    std::unique_ptr<PixelMap> smaller;
    if (longer > size_px) {
        smaller.reset(
            PixelMapTools::Resize(picture, std::max(1, picture.get_width() * size_px / longer),
                                  std::max(1, picture.get_height() * size_px / longer), true));
    }
    const PixelMap& source = smaller != nullptr ? *smaller : picture;
    const int left = (width_px - source.get_width()) / 2;
    const int top = (size_px - source.get_height()) / 2;
    for (int y = 0; y < source.get_height(); ++y) {
        for (int x = 0; x < source.get_width(); ++x) {
            area.set_pixel(left + x, top + y, source.get_pixel(x, y));
            area.set_alpha(left + x, top + y, source.get_alpha(x, y));
        }
    }
    return area;
}

}  // namespace editor
