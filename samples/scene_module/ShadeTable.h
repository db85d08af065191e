#pragma once

#include "graphics/RGB_Color.h"
#include "scene_module/TriangleMesh.h"

#include <cstdint>
#include <map>
#include <vector>

namespace scene {

/// The shading of models of one colour for all directions that a surface can face, so that a pixel
/// costs one look-up. Making one costs some ten milliseconds.
class ShadeTable {
public:
    explicit ShadeTable(const RGB_Color& color);

    /// The colour of a surface that faces that way: `normal` is of length 1, its z not negative.
    /// Blue in the lowest byte, then green and red.
    [[nodiscard]] std::uint32_t operator[](const Vector3& normal) const
    {
        return colors_[cell(normal.y) * kSide + cell(normal.x)];
    }

private:
    static constexpr std::size_t kSide = 192;

    [[nodiscard]] static std::size_t cell(float coordinate)
    {
        return static_cast<std::size_t>((coordinate * 0.5f + 0.5f) * (kSide - 1) + 0.5f);
    }

    std::vector<std::uint32_t> colors_;
};

/// The tables of the colours that a scene uses, each made at its first use.
class ShadeTables {
public:
    /// Good until the next call.
    [[nodiscard]] const ShadeTable& of(const RGB_Color& color);

    static constexpr std::size_t kMostTables = 64;  ///< With one more, all are made anew.

private:
    std::map<std::uint32_t, ShadeTable> tables_;
};

}  // namespace scene
