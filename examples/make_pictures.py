#!/usr/bin/env python3
"""Makes the example pictures, one small file for each kind that the library loads.

    make_pictures.py            writes them to pictures/ beside this file
    make_pictures.py --check    compares what is there with what would be written

Plain Python, and the same bytes on every run: the files are checked in, a test compares them.
"""

import math
import pathlib
import struct
import sys

FOLDER = pathlib.Path(__file__).resolve().parent / "pictures"

WIDTH, HEIGHT = 62, 42  # rows of 24 bits have padding: a run-length picture from the top needs it


def mix(first, second, share):
    """A colour between two, component by component; share 0 is the first."""
    return tuple(round(a + (b - a) * share) for a, b in zip(first, second))


def sunset(x, y):
    """The colour (red, green, blue) of a pixel: a sun over the sea."""
    horizon = HEIGHT * 2 // 3
    sun_x, sun_y, radius = WIDTH * 0.62, HEIGHT * 0.50, HEIGHT * 0.20
    if y < horizon:
        sky = mix((38, 34, 98), (255, 150, 80), (y / horizon) ** 1.4)
        distance = math.hypot(x - sun_x, y - sun_y)
        if distance <= radius:
            return (255, 236, 160)
        return mix((255, 214, 130), sky, min(1.0, (distance - radius) / (radius * 1.2)))
    depth = (y - horizon) / (HEIGHT - horizon)
    sea = mix((150, 84, 96), (18, 22, 60), depth)
    # The sun's path on the water, broken by waves.
    near = abs(x - sun_x) < radius * (0.5 + depth)
    return mix(sea, (255, 214, 130), 0.55) if near and (y + x // 7) % 3 != 0 else sea


PICTURE = [[sunset(x, y) for x in range(WIDTH)] for y in range(HEIGHT)]


def flat(rows):
    return [pixel for row in rows for pixel in row]


# --- Targa -------------------------------------------------------------------------------------


def targa_header(image_type, depth, top_left):
    alpha_bits = 8 if depth == 32 else 1 if depth == 16 else 0
    descriptor = (0x20 if top_left else 0) | alpha_bits
    return struct.pack("<BBBHHBHHHHBB", 0, 0, image_type, 0, 0, 0, 0, 0, WIDTH, HEIGHT, depth,
                       descriptor)


def targa_pixel(pixel, depth):
    red, green, blue = pixel
    if depth == 16:
        return struct.pack("<H", 0x8000 | red >> 3 << 10 | green >> 3 << 5 | blue >> 3)
    return bytes((blue, green, red)) + (b"\xff" if depth == 32 else b"")


def targa_plain(depth, top_left=True):
    rows = PICTURE if top_left else PICTURE[::-1]
    return targa_header(2, depth, top_left) + b"".join(targa_pixel(p, depth) for p in flat(rows))


def targa_packets(pixels, depth):
    """Run-length packets of one row: runs of two and more, everything else raw."""
    out, at = bytearray(), 0
    while at < len(pixels):
        run = 1
        while run < 128 and at + run < len(pixels) and pixels[at + run] == pixels[at]:
            run += 1
        if run > 1:
            out += bytes((0x80 | (run - 1),)) + targa_pixel(pixels[at], depth)
            at += run
            continue
        end = at + 1
        while end < len(pixels) and end - at < 128 and pixels[end] != pixels[end - 1]:
            end += 1
        if end < len(pixels) and end - at < 128:
            end -= 1  # its last pixel begins a run
        end = max(end, at + 1)
        out += bytes((end - at - 1,))
        out += b"".join(targa_pixel(pixel, depth) for pixel in pixels[at:end])
        at = end
    return bytes(out)


def targa_run_length(depth, top_left=True):
    rows = PICTURE if top_left else PICTURE[::-1]
    return targa_header(10, depth, top_left) + b"".join(targa_packets(r, depth) for r in rows)


# --- bitmaps with a palette --------------------------------------------------------------------


def grey(pixel):
    return (pixel[0] * 299 + pixel[1] * 587 + pixel[2] * 114) // 1000


def palette_of(colours):
    """That many shades from night blue over orange to sunlight."""
    stops = [(18, 22, 60), (150, 84, 96), (255, 150, 80), (255, 236, 160)]
    shades = []
    for index in range(colours):
        place = index / max(1, colours - 1) * (len(stops) - 1)
        low = min(int(place), len(stops) - 2)
        shades.append(mix(stops[low], stops[low + 1], place - low))
    return shades


def indexed(palette):
    """The picture as palette indices: the nearest shade of each pixel."""
    def nearest(pixel):
        return min(range(len(palette)),
                   key=lambda i: sum((a - b) ** 2 for a, b in zip(palette[i], pixel)))
    return [[nearest(pixel) for pixel in row] for row in PICTURE]


def dithered():
    """The picture in two colours, by an ordered pattern of 4 x 4."""
    pattern = [[0, 8, 2, 10], [12, 4, 14, 6], [3, 11, 1, 9], [15, 7, 13, 5]]
    return [[int(grey(pixel) > pattern[y % 4][x % 4] * 16 + 8) for x, pixel in enumerate(row)]
            for y, row in enumerate(PICTURE)]


def packed_row(values, bits):
    """Values of 1, 4 or 8 bits in bytes, the first one highest, padded to 4 bytes."""
    out, filled, used = bytearray(), 0, 0
    for value in values:
        filled, used = filled << bits | value, used + bits
        if used == 8:
            out.append(filled)
            filled = used = 0
    if used:
        out.append(filled << (8 - used))
    return bytes(out) + bytes(-len(out) % 4)


def bitmap(bits):
    if bits == 24:
        palette = []
        rows = [b"".join(bytes(p[::-1]) for p in row) for row in PICTURE]
        rows = [row + bytes(-len(row) % 4) for row in rows]
    else:
        palette = palette_of(1 << bits) if bits > 1 else [(18, 22, 60), (255, 236, 160)]
        values = indexed(palette) if bits > 1 else dithered()
        rows = [packed_row(row, bits) for row in values]
    table = b"".join(bytes((b, g, r, 0)) for r, g, b in palette)
    pixels = b"".join(reversed(rows))
    start = 14 + 40 + len(table)
    return (struct.pack("<2sIHHI", b"BM", start + len(pixels), 0, 0, start) +
            struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, bits, 0, len(pixels), 2835, 2835,
                        len(palette), 0) + table + pixels)


# --- PCX ---------------------------------------------------------------------------------------


def pcx_line(values):
    """The run-length code of one line: runs of two and more, and of bytes that look like runs."""
    out, at = bytearray(), 0
    while at < len(values):
        run = 1
        while run < 63 and at + run < len(values) and values[at + run] == values[at]:
            run += 1
        if run > 1 or values[at] >= 0xC0:
            out.append(0xC0 | run)
        out.append(values[at])
        at += run
    return bytes(out)


def pcx(planes):
    """One plane of palette indices with the palette at the end, or red, green and blue lines."""
    header = struct.pack("<BBBBHHHHHH48xBBHH58x", 10, 5, 1, 8, 0, 0, WIDTH - 1, HEIGHT - 1, 72, 72,
                         0, planes, WIDTH, 1)
    if planes == 3:
        rows = [[pixel[plane] for pixel in row] for row in PICTURE for plane in range(3)]
        return header + b"".join(pcx_line(row) for row in rows)
    palette = palette_of(256)
    rows = b"".join(pcx_line(row) for row in indexed(palette))
    return header + rows + b"\x0c" + b"".join(bytes(colour) for colour in palette)


# --- Photoshop ---------------------------------------------------------------------------------


def packed_bits(values):
    """PackBits: runs of three and more, everything else as it is."""
    out, at = bytearray(), 0
    while at < len(values):
        run = 1
        while run < 128 and at + run < len(values) and values[at + run] == values[at]:
            run += 1
        if run > 2:
            out += bytes((257 - run, values[at]))
            at += run
            continue
        end = at + 1
        while end < min(at + 128, len(values)) and values[end:end + 3] != [values[end]] * 3:
            end += 1
        out += bytes((end - at - 1,)) + bytes(values[at:end])
        at = end
    return bytes(out)


def psd(packed, alpha):
    """A merged image without layers, a plane for each channel."""
    channels = 4 if alpha else 3
    planes = [[[pixel[plane] for pixel in row] for row in PICTURE] for plane in range(3)]
    if alpha:
        planes.append([[255] * WIDTH] * HEIGHT)
    header = struct.pack(">4sH6xHIIHHIIIH", b"8BPS", 1, channels, HEIGHT, WIDTH, 8, 3, 0, 0, 0,
                         int(packed))
    if not packed:
        return header + b"".join(bytes(row) for plane in planes for row in plane)
    rows = [packed_bits(row) for plane in planes for row in plane]
    return header + struct.pack(f">{len(rows)}H", *map(len, rows)) + b"".join(rows)


# --- GIF ---------------------------------------------------------------------------------------


def lzw(values, bits):
    """GIF's form of LZW: codes that grow with the table, low bits first."""
    clear, end = 1 << bits, (1 << bits) + 1
    out, buffer, filled = bytearray(), 0, 0

    def put(code, size):
        nonlocal buffer, filled
        buffer |= code << filled
        filled += size
        while filled >= 8:
            out.append(buffer & 0xFF)
            buffer >>= 8
            filled -= 8

    size = bits + 1
    put(clear, size)
    table = {(value,): value for value in range(clear)}
    following, current = end + 1, ()
    for value in values:
        longer = current + (value,)
        if longer in table:
            current = longer
            continue
        put(table[current], size)
        if following < 4096:
            table[longer] = following
            if following == 1 << size and size < 12:
                size += 1
            following += 1
        else:
            put(clear, size)
            size, following = bits + 1, end + 1
            table = {(each,): each for each in range(clear)}
        current = (value,)
    put(table[current], size)
    put(end, size)
    if filled:
        out.append(buffer & 0xFF)
    return bytes(out)


def gif():
    bits = 5
    palette = palette_of(1 << bits)
    data = lzw(flat(indexed(palette)), bits)
    blocks = b"".join(bytes((len(data[i:i + 255]),)) + data[i:i + 255]
                      for i in range(0, len(data), 255))
    return (b"GIF89a" + struct.pack("<HHBBB", WIDTH, HEIGHT, 0x80 | 7 << 4 | bits - 1, 0, 0) +
            b"".join(bytes(colour) for colour in palette) +
            b"," + struct.pack("<HHHHB", 0, 0, WIDTH, HEIGHT, 0) + bytes((bits,)) + blocks +
            b"\0;")


# --- icon and cursor ---------------------------------------------------------------------------


def disc(size):
    """A sun with rays: rows of (red, green, blue) or None where the background shows."""
    middle = (size - 1) / 2

    def pixel(x, y):
        dx, dy = x - middle, y - middle
        distance = math.hypot(dx, dy) / size
        if distance < 0.28:
            return mix((255, 246, 190), (255, 190, 70), distance / 0.28)
        ray = math.cos(8 * math.atan2(dy, dx)) > 0.35
        return (255, 170, 60) if ray and 0.33 < distance < 0.48 else None

    return [[pixel(x, y) for x in range(size)] for y in range(size)]


def arrow(size):
    """The usual pointer: white with a dark edge."""
    def pixel(x, y):
        if y < size * 2 // 3 and x <= y * 2 // 3:
            edge = x == 0 or x >= y * 2 // 3 - 1 or y >= size * 2 // 3 - 1
            return (18, 22, 60) if edge else (255, 255, 255)
        return None
    return [[pixel(x, y) for x in range(size)] for y in range(size)]


def icon_image(rows):
    """A 24-bit image with its mask, as icons hold it: from the bottom, twice the height."""
    size = len(rows)
    colours = b"".join(b"".join(bytes((p or (0, 0, 0))[::-1]) for p in row)
                       for row in reversed(rows))
    mask = b"".join(packed_row([int(p is None) for p in row], 1) for row in reversed(rows))
    return struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 24, 0, len(colours) + len(mask),
                       0, 0, 0, 0) + colours + mask


def icon_file(kind, images):
    """Kind 1 is an icon, 2 a cursor, whose hot spot stands where an icon has planes and bits."""
    out = struct.pack("<HHH", 0, kind, len(images))
    place = 6 + 16 * len(images)
    for rows in images:
        data, size = icon_image(rows), len(rows)
        first, second = (1, 24) if kind == 1 else (0, 0)
        out += struct.pack("<BBBBHHII", size, size, 0, 0, first, second, len(data), place)
        place += len(data)
    return out + b"".join(icon_image(rows) for rows in images)


# --- metafiles ---------------------------------------------------------------------------------


def star(middle, radius):
    """The ten corners of a star."""
    points = []
    for corner in range(10):
        length = radius if corner % 2 == 0 else radius * 0.4
        angle = math.pi * corner / 5 - math.pi / 2
        points.append((round(middle + length * math.cos(angle)),
                       round(middle + length * math.sin(angle))))
    return points


SIDE = 1000  # units of both metafiles
ORANGE = 0x003C96FF  # blue, green, red from the top byte down


def wmf():
    """A placeable metafile of one inch: a filled star."""
    def record(function, *words):
        return struct.pack("<IH", 3 + len(words), function) + struct.pack(
            f"<{len(words)}H", *(word & 0xFFFF for word in words))

    points = [coordinate for point in star(500, 480) for coordinate in point]
    records = [
        record(0x020B, 0, 0),                    # window origin
        record(0x020C, SIDE, SIDE),              # window extent
        record(0x02FC, 0, ORANGE & 0xFFFF, ORANGE >> 16, 0),  # solid brush
        record(0x012D, 0),                       # select it
        record(0x0324, len(points) // 2, *points),
        record(0x0000),
    ]
    body = b"".join(records)
    header = struct.pack("<HHHIHIH", 1, 9, 0x0300, (18 + len(body)) // 2, 1,
                         max(len(r) for r in records) // 2, 0)
    placeable = struct.pack("<IHhhhhHI", 0x9AC6CDD7, 0, 0, 0, SIDE, SIDE, SIDE, 0)
    checksum = 0
    for (word,) in struct.iter_unpack("<H", placeable):
        checksum ^= word
    return placeable + struct.pack("<H", checksum) + header + body


def emf():
    """The same star as an enhanced metafile."""
    def record(function, data=b""):
        return struct.pack("<II", function, 8 + len(data)) + data

    points = star(500, 480)
    bounds = (min(x for x, _ in points), min(y for _, y in points),
              max(x for x, _ in points), max(y for _, y in points))
    polygon = struct.pack("<4iI", *bounds, len(points)) + b"".join(
        struct.pack("<2i", *point) for point in points)
    records = [
        record(17, struct.pack("<I", 8)),                          # map mode: any scale
        record(9, struct.pack("<2i", SIDE, SIDE)),                 # window extent
        record(11, struct.pack("<2i", SIDE, SIDE)),                # viewport extent
        record(39, struct.pack("<IIII", 1, 0, ORANGE, 0)),         # solid brush
        record(37, struct.pack("<I", 1)),                          # select it
        record(3, polygon),
        record(40, struct.pack("<I", 1)),                          # delete it
        record(14, struct.pack("<III", 0, 0, 20)),                 # end
    ]
    body = b"".join(records)
    frame = SIDE * 2540 // 96 // 10 * 10  # hundredths of a millimetre
    header = struct.pack("<II4i4iIIIIHHIII2i2i", 1, 88, *bounds, 0, 0, frame, frame, 0x464D4520,
                         0x10000, 88 + len(body), len(records) + 1, 2, 0, 0, 0, 0, 1920, 1080,
                         508, 286)
    return header + body


# --- all of them -------------------------------------------------------------------------------


def pictures():
    return {
        "sunset-24-top-left.tga": targa_plain(24),
        "sunset-24-bottom-left.tga": targa_plain(24, top_left=False),
        "sunset-24-run-length.tga": targa_run_length(24),
        "sunset-16-top-left.tga": targa_plain(16),
        "sunset-16-run-length-bottom-left.tga": targa_run_length(16, top_left=False),
        "sunset-32-top-left.tga": targa_plain(32),
        "sunset-1.bmp": bitmap(1),
        "sunset-4.bmp": bitmap(4),
        "sunset-8.bmp": bitmap(8),
        "sunset-24.bmp": bitmap(24),
        "sunset.gif": gif(),
        "sunset-8.pcx": pcx(1),
        "sunset-24.pcx": pcx(3),
        "sunset.psd": psd(packed=True, alpha=False),
        "sunset-raw-alpha.psd": psd(packed=False, alpha=True),
        "sun.ico": icon_file(1, [disc(32), disc(16)]),
        "arrow.cur": icon_file(2, [arrow(32)]),
        "star.wmf": wmf(),
        "star.emf": emf(),
    }


def check():
    """What is wrong with the folder, a line each."""
    wanted = pictures()
    found = {path.name: path.read_bytes() for path in FOLDER.iterdir()}
    wrong = [f"{name} is missing" for name in wanted.keys() - found.keys()]
    wrong += [f"{name} is none of ours" for name in found.keys() - wanted.keys()]
    wrong += [f"{name} differs" for name in wanted.keys() & found.keys()
              if wanted[name] != found[name]]
    return sorted(wrong)


def main(arguments):
    if arguments == ["--check"]:
        wrong = check()
        print("\n".join(wrong) or "all pictures are as they are made")
        return 1 if wrong else 0
    if arguments:
        print(__doc__, file=sys.stderr)
        return 2
    FOLDER.mkdir(exist_ok=True)
    for name, data in pictures().items():
        (FOLDER / name).write_bytes(data)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
