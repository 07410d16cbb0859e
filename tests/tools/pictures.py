"""Small picture files for the tests, and readers of what the tool writes. Pixels are rows from the top of
(red, green, blue)."""

import struct


def pattern(width, height):
    """Pixels that differ from each other in every channel."""
    return [[((x * 37 + y * 11) & 255, (x * 5 + y * 71 + 40) & 255, (x * 113 + y * 3 + 90) & 255)
             for x in range(width)] for y in range(height)]


def bgr(row):
    return bytes(value for red, green, blue in row for value in (blue, green, red))


def tga(pixels, from_top=True):
    """An uncompressed Targa of 24 bits."""
    height, width = len(pixels), len(pixels[0])
    header = struct.pack('<BBBHHBHHHHBB', 0, 0, 2, 0, 0, 0, 0, 0, width, height, 24,
                         0x20 if from_top else 0)
    rows = pixels if from_top else pixels[::-1]
    return header + b''.join(bgr(row) for row in rows)


def bmp(pixels):
    """A BMP of 24 bits."""
    height, width = len(pixels), len(pixels[0])
    padding = bytes(-width * 3 % 4)
    rows = b''.join(bgr(row) + padding for row in pixels[::-1])
    return (b'BM' + struct.pack('<III', 54 + len(rows), 0, 54) +
            struct.pack('<IiiHHIIiiII', 40, width, height, 1, 24, 0, len(rows), 0, 0, 0, 0) + rows)


def bmp_of_16_colours(indices, palette):
    """A BMP of 4 bits; `indices` are rows from the top, of an even number of pixels."""
    height, width = len(indices), len(indices[0])
    packed = [bytes(row[x] << 4 | row[x + 1] for x in range(0, width, 2)) for row in indices]
    rows = b''.join(row + bytes(-len(row) % 4) for row in packed[::-1])
    table = b''.join(bytes((blue, green, red, 0)) for red, green, blue in palette)
    offset = 54 + len(table)
    return (b'BM' + struct.pack('<III', offset + len(rows), 0, offset) +
            struct.pack('<IiiHHIIiiII', 40, width, height, 1, 4, 0, 0, 0, 0, len(palette), 0) +
            table + rows)


def icon(size, masked=0, cursor=False):
    """An icon or cursor file with one image of 32 bits, transparent in the columns from the left that are masked."""
    assert masked % 8 == 0
    pixels = (bytes(4 * masked) + bytes((1, 2, 3, 255)) * (size - masked)) * size
    mask = bytes([255] * (masked // 8)).ljust((size + 31) // 32 * 4, b'\0') * size
    image = struct.pack('<IiiHHIIiiII', 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0) + pixels + mask
    place = (3, 4) if cursor else (1, 32)
    return struct.pack('<HHHBBBBHHII', 0, 2 if cursor else 1, 1, size, size, 0, 0, *place, len(image), 22) + image


def metafile():
    """A placeable Windows metafile of two inches by one: a rectangle filled with (200, 100, 50)."""
    def record(function, *words):
        return struct.pack(f'<IH{len(words)}h', 3 + len(words), function, *words)

    placeable = struct.pack('<IH4hHI', 0x9AC6CDD7, 0, 0, 0, 2000, 1000, 1000, 0)
    checksum = 0
    for (word,) in struct.iter_unpack('<H', placeable):
        checksum ^= word
    # The window's origin and size, a solid brush as object 0, selected, a rectangle over all, the end.
    records = (record(0x020B, 0, 0) + record(0x020C, 1000, 2000) +
               record(0x02FC, 0, 200 | 100 << 8, 50, 0) + record(0x012D, 0) +
               record(0x041B, 1000, 2000, 0, 0) + record(0))
    header = struct.pack('<HHHIHIH', 1, 9, 0x300, 9 + len(records) // 2, 1, 7, 0)
    return placeable + struct.pack('<H', checksum) + header + records


def read_ppm(data):
    magic, size, most, rows = data.split(b'\n', 3)
    assert magic == b'P6' and most == b'255', data[:20]
    width, height = map(int, size.split())
    assert len(rows) == width * height * 3
    return [[tuple(rows[(y * width + x) * 3:][:3]) for x in range(width)] for y in range(height)]


def read_bmp(data):
    """Pixels of an uncompressed BMP of 24 or 32 bits whose rows come from the bottom."""
    assert data[:2] == b'BM'
    offset, header, width, height, _, bits, compression = struct.unpack_from('<IIiiHHI', data, 10)
    assert header == 40 and height > 0 and bits in (24, 32) and compression == 0, data[:54]
    stride = (width * bits + 31) // 32 * 4
    assert len(data) == offset + stride * height

    def pixel(x, y):
        at = offset + (height - 1 - y) * stride + x * bits // 8
        return data[at + 2], data[at + 1], data[at]

    return [[pixel(x, y) for x in range(width)] for y in range(height)]
