#!/usr/bin/env python3
"""Makes the pictures in data/, which the tests compare with the same formulas (TestPictures.h).

Those in data/native/ are read natively only. All but the JPEG files are written byte by byte; those
need ImageMagick's `convert`. Not made here: ycck.jpg, the inks of cmyk.jpg in JPEG's other colour
space for them, written with libjpeg.
Usage: make_pictures.py [FOLDER]
"""
import os
import struct
import subprocess
import sys
import zlib

WIDTH, HEIGHT = 7, 5
FOLDER = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "data")


def color(x, y):
    return (x * 40, y * 60, (x * 37 + y * 91) % 256)


def alpha(x, y):
    return (255, 0, 128, 64, 200)[(x + 2 * y) % 5]


def grey(x, y):
    return (x * 23 + y * 31) % 256


def index(x, y, count):
    return (x + 2 * y) % count


def entry(i):
    return ((i * 50) % 256, 255 - (i * 20) % 256, (i * 90) % 256)


def fives(x, y):
    return ((x * 5) % 32, (y * 7) % 32, (x + y * 3) % 32)


def each_pixel():
    return ((x, y) for y in range(HEIGHT) for x in range(WIDTH))


def save(name, data):
    with open(os.path.join(FOLDER, name), "wb") as file:
        file.write(data)


# ---- PNG

def chunk(name, data):
    return (struct.pack(">I", len(data)) + name + data +
            struct.pack(">I", zlib.crc32(name + data)))


def pack_bits(values, bits):
    out, room, used = bytearray(), 0, 0
    for value in values:
        room = room << bits | value
        used += bits
        if used == 8:
            out.append(room)
            room = used = 0
    if used:
        out.append(room << (8 - used))
    return bytes(out)


def png_row(points, pixel, bits):
    values = [part for x, y in points for part in pixel(x, y)]
    if bits == 16:
        return b"".join(struct.pack(">H", value) for value in values)
    return pack_bits(values, bits)


ADAM7 = ((0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2),
         (0, 1, 1, 2))


def png(name, kind, bits, pixel, extra=b"", interlaced=False):
    passes = ADAM7 if interlaced else ((0, 0, 1, 1),)
    rows = b""
    for left, top, step_x, step_y in passes:
        for y in range(top, HEIGHT, step_y):
            points = [(x, y) for x in range(left, WIDTH, step_x)]
            if points:
                rows += b"\0" + png_row(points, pixel, bits)
    header = struct.pack(">IIBBBBB", WIDTH, HEIGHT, bits, kind, 0, 0, int(interlaced))
    save(name, b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + extra +
         chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def palette_chunk(count):
    return chunk(b"PLTE", b"".join(bytes(entry(i)) for i in range(count)))


def wide(values):
    return tuple(value * 257 for value in values)


def make_png():
    rgba = lambda x, y: color(x, y) + (alpha(x, y),)
    png("rgb8.png", 2, 8, color)
    png("rgba8.png", 6, 8, rgba)
    png("rgb8_interlaced.png", 2, 8, color, interlaced=True)
    png("rgba8_interlaced.png", 6, 8, rgba, interlaced=True)
    png("rgb16.png", 2, 16, lambda x, y: wide(color(x, y)))
    png("rgba16.png", 6, 16, lambda x, y: wide(rgba(x, y)))
    png("grey8.png", 0, 8, lambda x, y: (grey(x, y),))
    png("grey16.png", 0, 16, lambda x, y: wide((grey(x, y),)))
    png("grey_alpha8.png", 4, 8, lambda x, y: (grey(x, y), alpha(x, y)))
    png("grey_alpha16.png", 4, 16, lambda x, y: wide((grey(x, y), alpha(x, y))))
    for bits in (1, 2, 4, 8):
        count = min(1 << bits, 12)
        pixel = lambda x, y, count=count: (index(x, y, count),)
        png("palette%d.png" % bits, 3, bits, pixel, palette_chunk(count))
    clear = chunk(b"tRNS", bytes((0, 128)))
    png("palette_alpha.png", 3, 4, lambda x, y: (index(x, y, 4),), palette_chunk(4) + clear)
    png("palette_alpha_interlaced.png", 3, 4, lambda x, y: (index(x, y, 4),),
        palette_chunk(4) + clear, interlaced=True)
    png("rgb8_key.png", 2, 8, color, chunk(b"tRNS", struct.pack(">HHH", *color(2, 1))))
    png("grey8_key.png", 0, 8, lambda x, y: (grey(x, y),),
        chunk(b"tRNS", struct.pack(">H", grey(3, 2))))


# ---- BMP

def bmp_rows(row, top_down):
    rows = []
    for y in range(HEIGHT) if top_down else reversed(range(HEIGHT)):
        data = row(y)
        rows.append(data + b"\0" * (-len(data) % 4))
    return b"".join(rows)


def bmp(name, depth, row, palette=b"", compression=0, header_bytes=40, masks=(), data=None,
        top_down=False, core=False):
    pixels = bmp_rows(row, top_down) if data is None else data
    height = -HEIGHT if top_down else HEIGHT
    if core:
        header = struct.pack("<IHHHH", 12, WIDTH, HEIGHT, 1, depth)
    else:
        header = struct.pack("<IiiHHIIiiII", header_bytes, WIDTH, height, 1, depth, compression,
                             len(pixels), 2835, 2835, len(palette) // 4, 0)
        header += b"".join(struct.pack("<I", mask) for mask in masks)
        header += b"\0" * (header_bytes - len(header))
    start = 14 + len(header) + len(palette)
    save(name, b"BM" + struct.pack("<IHHI", start + len(pixels), 0, 0, start) + header + palette +
         pixels)


def bgr(values):
    return bytes(reversed(values))


def make_bmp():
    def indexed(bits, count):
        return lambda y: pack_bits([index(x, y, count) for x in range(WIDTH)], bits)

    def palette(count):
        return b"".join(bgr(entry(i)) + b"\0" for i in range(count))

    def words(pixel, form):
        return lambda y: b"".join(struct.pack(form, pixel(x, y)) for x in range(WIDTH))

    def five(x, y):
        red, green, blue = fives(x, y)
        return red << 10 | green << 5 | blue

    def six(x, y):
        red, green, blue = fives(x, y)
        return red << 11 | (green * 2 + 1) << 5 | blue

    def tens(x, y):
        red, green, blue = (part * 4 for part in color(x, y))
        return red << 20 | green << 10 | blue

    rgb = lambda y: b"".join(bgr(color(x, y)) for x in range(WIDTH))
    bgrx = lambda y: b"".join(bgr(color(x, y)) + b"\x55" for x in range(WIDTH))
    bgra = lambda y: b"".join(bgr(color(x, y)) + bytes((alpha(x, y),)) for x in range(WIDTH))
    bmp("palette1.bmp", 1, indexed(1, 2), palette(2))
    bmp("palette4.bmp", 4, indexed(4, 12), palette(12))
    bmp("palette8.bmp", 8, indexed(8, 12), palette(12))
    bmp("five.bmp", 16, words(five, "<H"))
    bmp("six.bmp", 16, words(six, "<H"), compression=3, masks=(0xf800, 0x7e0, 0x1f),
        header_bytes=40)
    bmp("rgb24.bmp", 24, rgb)
    bmp("rgb24_top_down.bmp", 24, rgb, top_down=True)
    bmp("rgb24_core.bmp", 24, rgb, core=True)
    bmp("rgb32.bmp", 32, bgrx)
    bmp("rgb32_fields.bmp", 32, words(tens, "<I"), compression=3,
        masks=(0x3ff << 20, 0x3ff << 10, 0x3ff))
    standard = (0xff0000, 0xff00, 0xff, 0xff000000)
    bmp("rgba32.bmp", 32, bgra, compression=3, header_bytes=108, masks=standard)
    bmp("rgba32_top_down.bmp", 32, bgra, compression=3, header_bytes=124, masks=standard,
        top_down=True)
    core_palette = b"".join(bgr(entry(i)) for i in range(12)) + b"\0" * (244 * 3)
    bmp("palette8_core.bmp", 8, indexed(8, 12), core_palette, core=True)

    def runs8(y):  # one literal run, one run of the last pixel
        values = [index(x, y, 12) for x in range(WIDTH)]
        return bytes([0, 5] + values[:5] + [0, 1, values[5], 1, values[6]])

    data = b"".join(runs8(y) + b"\0\0" for y in reversed(range(HEIGHT))) + b"\0\1"
    bmp("runs8.bmp", 8, None, palette(12), compression=1, data=data)

    def runs4(y):
        values = [index(x, y, 12) for x in range(WIDTH)]
        literal = bytes([0, 5]) + pack_bits(values[:5], 4) + b"\0"
        return literal + bytes([2, values[5] << 4 | values[6]])

    data = b"".join(runs4(y) + b"\0\0" for y in reversed(range(HEIGHT))) + b"\0\1"
    bmp("runs4.bmp", 4, None, palette(12), compression=2, data=data)
    # Index 3 in the lowest row, a skip to (2, 2), index 5 there; the rest has index 0.
    data = bytes([WIDTH, 3, 0, 0, 0, 2, 2, 1, 1, 5, 0, 1])
    bmp("runs8_skip.bmp", 8, None, palette(12), compression=1, data=data)


# ---- TGA

def tga(name, kind, depth, pixel, descriptor=0, palette=b"", first=0, entries=0, entry_bits=0,
        runs=False, identity=b"", tail=b""):
    rows = range(HEIGHT) if descriptor & 0x20 else reversed(range(HEIGHT))
    data = b""
    for y in rows:
        columns = reversed(range(WIDTH)) if descriptor & 0x10 else range(WIDTH)
        pixels = [pixel(x, y) for x in columns]
        if runs:  # four literal pixels, then the others as runs of one
            data += bytes([3]) + b"".join(pixels[:4])
            data += b"".join(bytes([0x80]) + value for value in pixels[4:])
        else:
            data += b"".join(pixels)
    header = struct.pack("<BBBHHBHHHHBB", len(identity), int(entries > 0), kind + (8 if runs else 0),
                         first, entries, entry_bits, 0, 0, WIDTH, HEIGHT, depth, descriptor)
    save(name, header + identity + palette + data + tail)


def make_tga():
    rgb = lambda x, y: bgr(color(x, y))
    rgba = lambda x, y: bgr(color(x, y)) + bytes((alpha(x, y),))
    one = lambda x, y: bytes((grey(x, y),))

    def five(x, y):
        red, green, blue = fives(x, y)
        return struct.pack("<H", red << 10 | green << 5 | blue)

    indexed = lambda x, y: bytes((index(x, y, 12),))
    palette = b"".join(bgr(entry(i)) for i in range(12))
    tga("rgb24.tga", 2, 24, rgb)
    tga("rgb24_top.tga", 2, 24, rgb, 0x20)
    tga("rgb24_right.tga", 2, 24, rgb, 0x10)
    tga("rgb24_top_right.tga", 2, 24, rgb, 0x30, identity=b"a picture")
    tga("rgba32.tga", 2, 32, rgba, 8)
    tga("rgb32_no_alpha.tga", 2, 32, rgba, 0)
    tga("five15.tga", 2, 15, five)
    tga("five16.tga", 2, 16, five)
    tga("grey8.tga", 3, 8, one)
    tga("grey_alpha16.tga", 3, 16, lambda x, y: bytes((grey(x, y), alpha(x, y))), 8)
    tga("palette8.tga", 1, 8, indexed, palette=palette, entries=12, entry_bits=24)
    tga("palette8_first.tga", 1, 8, lambda x, y: bytes((index(x, y, 12) + 5,)), palette=palette,
        first=5, entries=12, entry_bits=24)
    tga("rgb24_runs.tga", 2, 24, rgb, runs=True)
    tga("rgba32_runs.tga", 2, 32, rgba, 0x28, runs=True)
    tga("grey8_runs.tga", 3, 8, one, 0x20, runs=True)
    tga("palette8_runs.tga", 1, 8, indexed, palette=palette, entries=12, entry_bits=24, runs=True)

    def multiplied(x, y):
        return bgr(tuple((part * alpha(x, y) + 127) // 255 for part in color(x, y))) + bytes(
            (alpha(x, y),))

    area_at = 18 + WIDTH * HEIGHT * 4
    area = struct.pack("<H", 495) + b"\0" * 492 + bytes([4])
    footer = struct.pack("<II", area_at, 0) + b"TRUEVISION-XFILE.\0"
    tga("multiplied.tga", 2, 32, multiplied, 8, tail=area + footer)


# ---- GIF

def gif_codes(indices, bits):
    """Codes without compression: the table is cleared before it grows a bit."""
    clear, room, used, out = 1 << bits, 0, 0, bytearray()
    codes = []
    for place, value in enumerate(indices):
        if place % (clear - 2) == 0:
            codes.append(clear)
        codes.append(value)
    codes.append(clear + 1)
    for code in codes:
        room |= code << used
        used += bits + 1
        while used >= 8:
            out.append(room & 255)
            room >>= 8
            used -= 8
    if used:
        out.append(room)
    blocks = b""
    for start in range(0, len(out), 100):
        part = out[start:start + 100]
        blocks += bytes([len(part)]) + part
    return bytes([bits]) + blocks + b"\0"


def gif(name, screen, place=(0, 0), transparent=None, interlaced=False, frames=1):
    palette = b"".join(bytes(entry(i)) for i in range(12)) + b"\0" * 12
    data = b"GIF89a" + struct.pack("<HHBBB", screen[0], screen[1], 0xf3, 0, 0) + palette
    rows = range(HEIGHT)
    if interlaced:
        rows = [y for first, step in ((0, 8), (4, 8), (2, 4), (1, 2))
                for y in range(first, HEIGHT, step)]
    for frame in range(frames):
        if transparent is not None:
            data += b"\x21\xf9\4" + struct.pack("<BHBB", 1, 0, transparent, 0)
        data += b"\x2c" + struct.pack("<HHHHB", place[0], place[1], WIDTH, HEIGHT,
                                      0x40 if interlaced else 0)
        indices = [(index(x, y, 12) + frame) % 12 for y in rows for x in range(WIDTH)]
        data += gif_codes(indices, 4)
    save(name, data + b"\x3b")


def make_gif():
    size = (WIDTH, HEIGHT)
    gif("plain.gif", size)
    gif("interlaced.gif", size, interlaced=True)
    gif("transparent.gif", size, transparent=3)
    gif("two_frames.gif", size, frames=2)
    gif("offset.gif", (WIDTH + 4, HEIGHT + 3), place=(2, 1))


# ---- TIFF

def tiff(name, order, samples, pixel, photometric, bits=8, extra=None, palette=None, orientation=1,
         compression=1):
    rows = b"".join(png_row([(x, y) for x in range(WIDTH)], pixel, bits) for y in range(HEIGHT)) \
        if bits < 16 else \
        b"".join(struct.pack(order + "H", part) for y in range(HEIGHT) for x in range(WIDTH)
                 for part in pixel(x, y))
    rows = zlib.compress(rows) if compression == 8 else rows
    fields = [(256, 3, [WIDTH]), (257, 3, [HEIGHT]), (258, 3, [bits] * samples),
              (259, 3, [compression]), (262, 3, [photometric]), (273, 4, [8]),
              (274, 3, [orientation]), (277, 3, [samples]), (278, 3, [HEIGHT]),
              (279, 4, [len(rows)])]
    if palette is not None:
        fields.append((320, 3, palette))
    if extra is not None:
        fields.append((338, 3, [extra]))
    start = 8 + len(rows) + len(rows) % 2
    head = (b"II" if order == "<" else b"MM") + struct.pack(order + "HI", 42, start)
    directory = struct.pack(order + "H", len(fields))
    beyond_at = start + 2 + 12 * len(fields) + 4
    beyond = b""
    for tag, kind, values in fields:
        data = b"".join(struct.pack(order + ("H" if kind == 3 else "I"), v) for v in values)
        if len(data) > 4:
            place = struct.pack(order + "I", beyond_at + len(beyond))
            beyond += data
        else:
            place = data + b"\0" * (4 - len(data))
        directory += struct.pack(order + "HHI", tag, kind, len(values)) + place
    save(name, head + rows + b"\0" * (len(rows) % 2) + directory + b"\0\0\0\0" + beyond)


def make_tiff():
    rgba = lambda x, y: color(x, y) + (alpha(x, y),)

    def multiplied(x, y):
        return tuple((part * alpha(x, y) + 127) // 255 for part in color(x, y)) + (alpha(x, y),)

    tiff("rgb8.tif", "<", 3, color, 2)
    tiff("rgb8_big_endian.tif", ">", 3, color, 2)
    tiff("rgb8_deflate.tif", "<", 3, color, 2, compression=8)
    tiff("rgb16.tif", "<", 3, lambda x, y: wide(color(x, y)), 2, bits=16)
    tiff("rgba8.tif", "<", 4, rgba, 2, extra=2)
    tiff("rgba8_multiplied.tif", "<", 4, multiplied, 2, extra=1)
    tiff("grey8.tif", "<", 1, lambda x, y: (grey(x, y),), 1)
    tiff("grey8_inverted.tif", "<", 1, lambda x, y: (255 - grey(x, y),), 0)
    tiff("grey_alpha8.tif", "<", 2, lambda x, y: (grey(x, y), alpha(x, y)), 1, extra=2)
    tiff("native/grey_alpha16.tif", ">", 2, lambda x, y: wide((grey(x, y), alpha(x, y))), 1, bits=16,
         extra=2)
    palette = [entry(i)[part] * 257 if i < 12 else 0 for part in range(3) for i in range(256)]
    tiff("palette8.tif", "<", 1, lambda x, y: (index(x, y, 12),), 3, palette=palette)
    for orientation in (3, 6, 8):
        tiff("turned%d.tif" % orientation, "<", 3, color, 2, orientation=orientation)


# ---- JPEG: 32 by 24, a colour in each quarter

QUARTERS = ("#c81e1e", "#1eb43c", "#2850d2", "#f0f0f0")


def exif(orientation):
    directory = struct.pack("<HHHIHH", 1, 274, 3, 1, orientation, 0) + b"\0\0\0\0"
    body = b"Exif\0\0II" + struct.pack("<HI", 42, 8) + directory
    return b"\xff\xe1" + struct.pack(">H", len(body) + 2) + body


def make_jpeg():
    draw = ["convert", "-size", "32x24", "xc:white"]
    for place, fill in zip(("0,0 15,11", "16,0 31,11", "0,12 15,23", "16,12 31,23"), QUARTERS):
        draw += ["-fill", fill, "-draw", "rectangle " + place]

    def convert(name, *options):
        path = os.path.join(FOLDER, name)
        subprocess.run(draw + ["-strip", "-quality", "95", "-sampling-factor", "1x1", *options,
                               "jpeg:" + path], check=True)
        with open(path, "rb") as file:
            return file.read()

    plain = convert("baseline.jpg")
    convert("progressive.jpg", "-interlace", "JPEG")
    convert("grey.jpg", "-colorspace", "Gray")
    convert("cmyk.jpg", "-colorspace", "CMYK")
    for orientation in range(2, 9):
        save("turned%d.jpg" % orientation, plain[:2] + exif(orientation) + plain[2:])


def main():
    os.makedirs(os.path.join(FOLDER, "native"), exist_ok=True)
    make_png()
    make_bmp()
    make_tga()
    make_gif()
    make_tiff()
    make_jpeg()


main()
