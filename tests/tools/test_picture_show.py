"""orvane picture show: a page with all pictures, as a PNG file."""

import struct
import zlib

import pictures
from tool_case import ToolCase


def read_png(data):
    """Pixels of a PNG of 8 bits true colour whose rows all have the filter 4."""
    assert data[:8] == b'\x89PNG\r\n\x1a\n'
    at, chunks = 8, {}
    while at < len(data):
        length, kind = struct.unpack_from('>I4s', data, at)
        content = data[at + 8:at + 8 + length]
        assert struct.unpack_from('>I', data, at + 8 + length)[0] == zlib.crc32(kind + content)
        chunks[kind] = content
        at += 12 + length
    width, height, depth, colour = struct.unpack_from('>IIBB', chunks[b'IHDR'])
    assert (depth, colour) == (8, 2)
    raw, rows, above = zlib.decompress(chunks[b'IDAT']), [], bytes(width * 3)
    assert len(raw) == (width * 3 + 1) * height
    for y in range(height):
        start = y * (width * 3 + 1)
        assert raw[start] == 4
        row = bytearray(raw[start + 1:start + 1 + width * 3])
        for i in range(len(row)):
            left, corner = (row[i - 3], above[i - 3]) if i >= 3 else (0, 0)
            guess = left + above[i] - corner
            nearest = min((abs(guess - left), 0, left), (abs(guess - above[i]), 1, above[i]),
                          (abs(guess - corner), 2, corner))
            row[i] = (row[i] + nearest[2]) & 255
        above = bytes(row)
        rows.append([tuple(row[x:x + 3]) for x in range(0, len(row), 3)])
    return rows


class PictureShow(ToolCase):
    def show(self, *words, status=0, out='contact-sheet.png'):
        self.assertEqual(self.run_tool('picture', 'show', *words), (status, out + '\n', ''))
        return read_png((self.folder / out).read_bytes())

    def test_a_picture_is_on_the_page_with_its_colours(self):
        self.write('a.tga', pictures.tga([[(12, 200, 77)] * 300] * 200))
        page = self.show('a.tga')
        colours = [pixel for row in page for pixel in row]
        # 300 x 200 pixels in a place of 240 x 240.
        self.assertEqual(colours.count((12, 200, 77)), 240 * 160)

    def test_small_pictures_are_enlarged_by_whole_numbers(self):
        self.write('a.tga', pictures.tga([[(255, 0, 0), (0, 0, 255)]]))
        colours = [pixel for row in self.show('a.tga') for pixel in row]
        self.assertEqual(colours.count((255, 0, 0)), 64)
        self.assertEqual(colours.count((0, 0, 255)), 64)

    def test_a_fine_pattern_keeps_its_brightness(self):
        rows = [[(255, 255, 255) if (x + y) % 2 else (0, 0, 0) for x in range(480)]
                for y in range(480)]
        self.write('a.tga', pictures.tga(rows))
        colours = [pixel for row in self.show('a.tga') for pixel in row]
        # Half the light of white, by the curve of sRGB.
        self.assertEqual(colours.count((188, 188, 188)), 240 * 240)

    def test_broken_files_and_icons_have_their_places(self):
        self.write('text', b'no picture at all\n')
        self.write('a.ico', pictures.icon(16))
        self.write('a.tga', pictures.tga(pictures.pattern(20, 10)))
        one = self.show('a.tga', out='contact-sheet.png')
        all_three = self.show('-o', 'all.png', 'text', 'a.ico', 'a.tga', 'gone.tga', status=1,
                              out='all.png')
        self.assertGreater(len(all_three[0]), len(one[0]))
        reds = {(0xA4, 0x3A, 0x2A), (0xF8, 0xE9, 0xE5)}
        self.assertFalse(reds & {pixel for row in one for pixel in row})
        self.assertTrue(reds <= {pixel for row in all_three for pixel in row})

    def test_icons_are_shown_on_the_ground_of_thumbnails(self):
        ground = (0xF4, 0xF3, 0xF0)
        self.write('a.ico', pictures.icon(16))
        colours = [pixel for row in self.show('a.ico') for pixel in row]
        # 16 x 16 pixels, each shown as 8 x 8.
        self.assertEqual(colours.count((3, 2, 1)), 128 * 128)
        self.write('b.ico', pictures.icon(16, masked=8))
        half = [pixel for row in self.show('b.ico') for pixel in row]
        self.assertEqual(half.count((3, 2, 1)), 128 * 64)
        self.assertGreaterEqual(half.count(ground), colours.count(ground) + 128 * 64)

    def test_cursors_are_shown(self):
        self.write('a.cur', pictures.icon(32, cursor=True))
        colours = [pixel for row in self.show('a.cur') for pixel in row]
        self.assertEqual(colours.count((3, 2, 1)), 224 * 224)

    def test_names_outside_the_code_page(self):
        self.write('日本 Ёлка.tga', pictures.tga(pictures.pattern(3, 3)))
        self.show('-o', 'лист.png', '日本 Ёлка.tga', out='лист.png')

    def test_a_converted_png_has_every_pixel(self):
        pixels = pictures.pattern(13, 9)
        self.write('a.tga', pictures.tga(pixels))
        self.assertEqual(self.run_tool('picture', 'convert', 'a.tga', 'a.PNG'), (0, '', ''))
        self.assertEqual(read_png((self.folder / 'a.PNG').read_bytes()), pixels)
        self.assertEqual(self.run_tool('picture', 'info', 'a.PNG'),
                         (0, 'a.PNG: Portable network graphics, 13 x 9, 24 bits per pixel\n', ''))
