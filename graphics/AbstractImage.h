#pragma once

#include "graphics/GPalette.h"
#include "graphics/RGB_Color.h"
#include "platform/Export.h"

/// A picture as rows of colours, however it keeps them. Rows are counted from the top.
class ZMR_GV_API AbstractImage {
public:
    /// How a pixel is kept.
    enum MapFormat {
        Format24 = 2,  ///< Blue, green, red.
        Format32 = 6   ///< Blue, green, red, alpha (0 transparent, not multiplied in).
    };

    virtual ~AbstractImage();

    [[nodiscard]] virtual int get_width() const = 0;
    [[nodiscard]] virtual int get_height() const = 0;
    [[nodiscard]] virtual MapFormat get_format() const = 0;
    /// The palette that the picture was made with, or null.
    [[nodiscard]] virtual const GPalette* get_palette() const = 0;
    /// The format of the pixels in memory.
    [[nodiscard]] virtual MapFormat get_buffer_format() const = 0;

    /// Bracket the reading of rows. False when there is nothing to read.
    virtual bool start_read() = 0;
    virtual void stop_read() = 0;
    /// Bracket the writing of rows. False when there is nothing to write to.
    virtual bool start_write() = 0;
    virtual void stop_write() = 0;
    /// Copies row `y` to `line`, which has room for the width. A row outside is left alone.
    virtual void get_color_line(int y, RGB_Color* line) const = 0;
    /// Sets the colours of row `y`, with full alpha. A row outside is ignored.
    virtual void set_color_line(int y, const RGB_Color* line) = 0;

protected:
    AbstractImage() = default;
    AbstractImage(const AbstractImage&) = default;
    AbstractImage& operator=(const AbstractImage&) = default;
};
