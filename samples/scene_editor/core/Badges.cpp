#include "scene_editor/core/Badges.h"

#include "scene_editor/core/BuiltInPictures.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace editor {

namespace {

constexpr int kSide = 9;  // of a mark as it is drawn below

// `#` is the mark's colour, `o` its ground, a blank leaves the icon as it is.
constexpr std::array<std::string_view, kSide> kArrow{
    "ooooooooo",  //
    "oooo###oo",  //
    "ooooo####",  //
    "ooo######",  //
    "oo###o##o",  //
    "o###ooo#o",  //
    "o##oooooo",  //
    "o##oooooo",  //
    "ooooooooo",
};
constexpr std::array<std::string_view, kSide> kSheet{
    "#######  ",  //
    "#oooo### ",  //
    "#oooo####",  //
    "#ooooooo#",  //
    "#o#####o#",  //
    "#ooooooo#",  //
    "#o#####o#",  //
    "#ooooooo#",  //
    "#########",
};
constexpr std::array<std::string_view, kSide> kCross{
    "ooooooooo",  //
    "o##ooo##o",  //
    "o###o###o",  //
    "oo#####oo",  //
    "ooo###ooo",  //
    "oo#####oo",  //
    "o###o###o",  //
    "o##ooo##o",  //
    "ooooooooo",
};

constexpr RGB_Color kGround{255, 255, 255};
constexpr RGB_Color kArrowColor{20, 70, 170};
constexpr RGB_Color kSheetColor{70, 80, 95};
constexpr RGB_Color kCrossColor{200, 20, 20};

void draw(PixelMap& picture, const std::array<std::string_view, kSide>& mark,
          const RGB_Color& color)
{
    const int size = picture.get_height();
    const int side = std::max(kSide, size * 4 / 10);  // each point of the mark some pixels
    const int shown = std::min(side, size);
    for (int y = 0; y < shown; ++y) {
        for (int x = 0; x < shown; ++x) {
            const char point = mark[static_cast<std::size_t>(y * kSide / shown)]
                                   [static_cast<std::size_t>(x * kSide / shown)];
            if (point == ' ')
                continue;
            picture.set_pixel(x, size - shown + y, point == '#' ? color : kGround);
            picture.set_alpha(x, size - shown + y, 255);
        }
    }
}

}  // namespace

PixelMap with_badge(const PixelMap& icon, Holding holding, int size_px)
{
    PixelMap picture = in_middle(icon, size_px, size_px);
    switch (holding) {
        case Holding::Reference:
            draw(picture, kArrow, kArrowColor);
            break;
        case Holding::External:
            draw(picture, kSheet, kSheetColor);
            break;
        case Holding::Lost:
            draw(picture, kCross, kCrossColor);
            break;
        case Holding::Inside:
            break;
    }
    return picture;
}

}  // namespace editor
