"""orvane picture convert: what it writes is the picture, and a failure leaves nothing."""

import os
import pathlib
import resource
import shutil
import subprocess

import pictures
import tool_case
from tool_case import ToolCase, natively


class PictureConvert(ToolCase):
    def convert(self, source, target):
        self.assertEqual(self.run_tool('picture', 'convert', source, target), (0, '', ''))
        return (self.folder / target).read_bytes()

    def assert_fails(self, source, target, *texts, **options):
        """It says so in one line that holds the texts, and the folder is as it was."""
        before = {name: (self.folder / name).read_bytes() for name in self.names()
                  if (self.folder / name).is_file()}
        names = self.names()
        status, output, errors = self.run_tool('picture', 'convert', source, target, **options)
        self.assertEqual((status, output, errors.count('\n')), (1, '', 1), errors)
        for text in ('orvane: ', *texts):
            self.assertIn(text, errors)
        self.assertEqual(self.names(), names)
        for name, data in before.items():
            self.assertEqual((self.folder / name).read_bytes(), data)

    def test_a_targa_keeps_every_pixel(self):
        for width in (1, 2, 3, 4, 5, 31):
            for from_top in (True, False):
                with self.subTest(width=width, from_top=from_top):
                    pixels = pictures.pattern(width, 6)
                    self.write('a.tga', pictures.tga(pixels, from_top))
                    self.assertEqual(pictures.read_ppm(self.convert('a.tga', 'a.ppm')), pixels)
                    self.assertEqual(pictures.read_bmp(self.convert('a.tga', 'a.bmp')), pixels)

    def test_the_bitmap_it_wrote_converts_to_the_same_pixels(self):
        pixels = pictures.pattern(13, 9)
        self.write('a.tga', pictures.tga(pixels))
        self.convert('a.tga', 'a.bmp')
        self.assertEqual(pictures.read_ppm(self.convert('a.bmp', 'b.ppm')), pixels)
        self.assertEqual(pictures.read_bmp(self.convert('a.bmp', 'b.bmp')), pixels)

    def test_a_bitmap_with_a_colour_table(self):
        palette = [(i * 16, 255 - i * 3, i * i) for i in range(16)]
        indices = [[(x * 5 + y) % 16 for x in range(10)] for y in range(4)]
        self.write('a.bmp', pictures.bmp_of_16_colours(indices, palette))
        self.assertEqual(pictures.read_ppm(self.convert('a.bmp', 'a.ppm')),
                         [[palette[index] for index in row] for row in indices])

    def test_the_extension_decides_in_either_case(self):
        self.write('a.tga', pictures.tga(pictures.pattern(2, 2)))
        self.assertEqual(self.convert('a.tga', 'A.PPM')[:2], b'P6')
        self.assertEqual(self.convert('a.tga', 'A.Bmp')[:2], b'BM')

    def test_a_file_can_be_converted_in_place(self):
        pixels = pictures.pattern(3, 3)
        self.write('a.ppm', pictures.tga(pixels))
        self.assertEqual(pictures.read_ppm(self.convert('a.ppm', 'a.ppm')), pixels)
        self.assertEqual(self.names(), ['a.ppm'])

    def test_names_outside_the_code_page(self):
        pixels = pictures.pattern(3, 3)
        self.write('日本.tga', pictures.tga(pixels))
        self.assertEqual(pictures.read_ppm(self.convert('日本.tga', '出力.ppm')), pixels)
        self.assertEqual(self.names(), ['出力.ppm', '日本.tga'])

    def test_only_the_result_is_left(self):
        self.write('a.tga', pictures.tga(pictures.pattern(2, 2)))
        self.convert('a.tga', 'a.bmp')
        self.assertEqual(self.names(), ['a.bmp', 'a.tga'])

    def test_a_missing_picture(self):
        self.assert_fails('gone.tga', 'a.bmp', 'gone.tga: error 53 File not found')

    def test_what_is_no_picture_leaves_the_old_result(self):
        self.write('text', b'no picture at all\n')
        self.write('a.ppm', b'the old one')
        self.assert_fails('text', 'a.ppm', 'text: error 481 Invalid picture')

    def test_icons_and_cursors_are_drawn_on_the_colour_of_a_form(self):
        drawn = [[(0xF0, 0xF0, 0xF0)] * 8 + [(3, 2, 1)] * 8] * 16
        self.write('a.ico', pictures.icon(16, masked=8))
        self.assertEqual(pictures.read_bmp(self.convert('a.ico', 'a.bmp')), drawn)
        self.assertEqual(pictures.read_ppm(self.convert('a.ico', 'a.ppm')), drawn)
        self.write('a.cur', pictures.icon(32, cursor=True))
        self.assertEqual(pictures.read_bmp(self.convert('a.cur', 'b.bmp')), [[(3, 2, 1)] * 32] * 32)

    def test_a_metafile_is_drawn_with_480_pixels_on_its_longer_side(self):
        self.write('a.wmf', pictures.metafile())
        drawn = pictures.read_bmp(self.convert('a.wmf', 'a.bmp'))
        self.assertEqual((len(drawn[0]), len(drawn)), (480, 240))
        self.assertEqual({pixel for row in drawn[5:-5] for pixel in row[5:-5]}, {(200, 100, 50)})

    @natively
    def test_without_the_player_metafiles_are_not_drawn(self):
        bin_folder = pathlib.Path(tool_case.tool[0]).parent
        for name in ('orvane', 'libOrvaneBase0301.so', 'libOrvanePictures.so'):
            shutil.copy(bin_folder / name, self.folder)
        self.write('a.wmf', pictures.metafile())
        self.write('a.tga', pictures.tga(pictures.pattern(2, 2)))
        tool = str(self.folder / 'orvane')
        status, output, errors = self.captured([tool, 'picture', 'convert', 'a.wmf', 'a.bmp'])
        self.assertEqual((status, output, errors.decode()),
                         (1, b'', "orvane: a.wmf: Windows metafile: can't be drawn on this system\n"))
        self.assertEqual(self.captured([tool, 'picture', 'convert', 'a.tga', 'b.bmp'])[0], 0)
        status, output, errors = self.captured([tool, 'picture', 'info', 'a.wmf'])
        self.assertEqual((status, errors), (0, b''))

    def test_a_missing_folder(self):
        self.write('a.tga', pictures.tga(pictures.pattern(2, 2)))
        self.assert_fails('a.tga', 'gone/a.bmp', 'gone/a.bmp')

    def test_a_folder_is_not_replaced(self):
        self.write('a.tga', pictures.tga(pictures.pattern(2, 2)))
        os.mkdir(self.folder / 'a.bmp')
        self.assert_fails('a.tga', 'a.bmp', 'a.bmp: not a file')

    @natively
    def test_a_pipe_is_not_replaced(self):
        self.write('a.tga', pictures.tga(pictures.pattern(2, 2)))
        os.mkfifo(self.folder / 'a.ppm')
        self.assert_fails('a.tga', 'a.ppm', 'a.ppm: not a file')

    @natively
    def test_a_write_that_fails_leaves_the_old_result(self):
        self.write('a.tga', pictures.tga(pictures.pattern(64, 64)))
        self.write('a.ppm', b'the old one')
        limit = resource.RLIMIT_FSIZE
        self.assert_fails('a.tga', 'a.ppm', 'a.ppm: File too large',
                          preexec_fn=lambda: resource.setrlimit(limit, (1000, 1000)))

    @natively
    def test_a_new_file_has_the_usual_rights(self):
        self.write('a.tga', pictures.tga(pictures.pattern(2, 2)))
        subprocess.run(['sh', '-c', 'umask 027; exec "$0" picture convert a.tga a.ppm',
                        *tool_case.tool], cwd=self.folder, check=True)
        self.assertEqual(os.stat(self.folder / 'a.ppm').st_mode & 0o777, 0o640)
