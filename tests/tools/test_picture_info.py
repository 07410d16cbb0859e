"""orvane picture info: a line for each file, as text and as JSON."""

import json
import os
import pwd
import subprocess

import pictures
import tool_case
from tool_case import ToolCase, natively


class PictureInfo(ToolCase):
    def json_of(self, *names, status=0):
        code, output, errors = self.run_tool('picture', 'info', '--json', *names)
        self.assertEqual((code, errors), (status, ''))
        return [json.loads(line) for line in output.splitlines()]

    def test_a_targa_is_described_in_a_line(self):
        self.write('a.tga', pictures.tga(pictures.pattern(5, 3)))
        self.assert_prints(['picture', 'info', 'a.tga'],
                           ['a.tga: Truevision Targa, 5 x 3, 24 bits per pixel'])

    def test_json_has_the_same_facts(self):
        self.write('a.tga', pictures.tga(pictures.pattern(5, 3)))
        self.assertEqual(self.json_of('a.tga'),
                         [{'file': 'a.tga', 'type': 11, 'typeName': 'Truevision Targa',
                           'width': 5, 'height': 3, 'bpp': 24}])

    def test_json_keeps_the_order_of_its_keys(self):
        self.write('a.tga', pictures.tga(pictures.pattern(1, 1)))
        line, = self.run_tool('picture', 'info', '--json', 'a.tga', 'b')[1].splitlines()[:1]
        self.assertEqual(list(json.loads(line)),
                         ['file', 'type', 'typeName', 'width', 'height', 'bpp'])

    def test_a_bitmap_is_a_windows_bitmap(self):
        self.write('a.bmp', pictures.bmp(pictures.pattern(7, 2)))
        facts, = self.json_of('a.bmp')
        # Which depth the system's own loader gives a bitmap is the system's choice on Windows.
        depth = facts.pop('bpp')
        self.assertIn(depth, (24, 32) if tool_case.on_windows else (24,))
        self.assertEqual(facts, {'file': 'a.bmp', 'type': 1, 'typeName': 'Windows bitmap',
                                 'width': 7, 'height': 2})

    def test_an_icon_has_no_size(self):
        self.write('a.ico', pictures.icon(16))
        self.assert_prints(['picture', 'info', 'a.ico'], ['a.ico: Windows icon'])
        self.assertEqual(self.json_of('a.ico'),
                         [{'file': 'a.ico', 'type': 6, 'typeName': 'Windows icon',
                           'width': -1, 'height': -1, 'bpp': -1}])

    def test_a_failed_file_has_its_error_in_its_line(self):
        self.write('text', b'no picture at all\n')
        self.write('a.tga', pictures.tga(pictures.pattern(2, 2)))
        self.assert_prints(['picture', 'info', 'text', 'a.tga', 'gone', '.'],
                           ['text: error 481 Invalid picture',
                            'a.tga: Truevision Targa, 2 x 2, 24 bits per pixel',
                            'gone: error 53 File not found',
                            '.: error 53 File not found'], status=1)

    def test_json_tells_errors_with_number_and_description(self):
        self.write('text', b'no picture at all\n')
        self.assertEqual(self.json_of('text', 'gone', '', status=1),
                         [{'file': 'text', 'error': {'number': 481,
                                                     'description': 'Invalid picture'}},
                          {'file': 'gone', 'error': {'number': 53,
                                                     'description': 'File not found'}},
                          {'file': '', 'error': {'number': 53,
                                                 'description': 'File not found'}}])

    def test_names_of_the_code_page_and_outside_it(self):
        names = ['Картинка.tga', '日本 語.tga', 'naïve\U0001F600.tga', 'и\u0306.tga']
        for width, name in enumerate(names, 1):
            self.write(name, pictures.tga(pictures.pattern(width, 1)))
        self.assertEqual([(facts['file'], facts['width']) for facts in self.json_of(*names)],
                         [(name, width) for width, name in enumerate(names, 1)])
        self.assert_prints(['picture', 'info', names[1]],
                           ['日本 語.tga: Truevision Targa, 2 x 1, 24 bits per pixel'])

    def test_a_missing_file_outside_the_code_page_is_not_found(self):
        self.assertEqual(self.json_of('日本.tga', status=1)[0]['error']['number'], 53)

    def test_folders_outside_the_code_page(self):
        os.mkdir(self.folder / '日本')
        self.write('日本/a.tga', pictures.tga(pictures.pattern(3, 1)))
        self.assertEqual(self.json_of('日本/a.tga')[0]['width'], 3)
        self.assertEqual(self.json_of('日本', status=1)[0]['error']['number'], 53)

    def test_two_hyphens_end_the_options(self):
        self.write('--json', pictures.tga(pictures.pattern(1, 1)))
        self.assert_prints(['picture', 'info', '--', '--json'],
                           ['--json: Truevision Targa, 1 x 1, 24 bits per pixel'])

    @natively
    def test_any_bytes_of_a_name_give_valid_json(self):
        image = pictures.tga(pictures.pattern(1, 1))
        names = [b'quote".tga', b'back\\slash', b'new\nline', b'tab\t\x01\x7f', b'\xff\xfe\xd0',
                 b'\xed\xa0\x80']
        for name in names:
            self.write(name, image)
        found = self.json_of(*names)
        self.assertEqual([facts['file'] for facts in found],
                         ['quote".tga', 'back\\slash', 'new\nline', 'tab\t\x01\x7f', '\ufffd' * 3,
                          '\ufffd' * 3])
        self.assertEqual({facts['width'] for facts in found}, {1})

    @natively
    def test_text_keeps_one_line_a_file_whatever_its_name(self):
        self.assert_prints(['picture', 'info', b'a\nb\xff\x1b[1m'],
                           ['a\\x0Ab\\xFF\\x1B[1m: error 53 File not found'], status=1)

    @natively
    def test_a_file_that_fails_when_it_is_read_is_an_invalid_picture(self):
        self.assert_prints(['picture', 'info', '/proc/self/mem'],
                           ['/proc/self/mem: error 481 Invalid picture'], status=1)

    @natively
    def test_files_without_the_right_to_read_are_invalid_pictures(self):
        names = ['plain.tga', '日本.tga']
        for name in names:
            self.write(name, pictures.tga(pictures.pattern(1, 1)))
            os.chmod(self.folder / name, 0)
        os.chmod(self.folder, 0o755)
        user = {}
        if os.geteuid() == 0:
            nobody = pwd.getpwnam('nobody')
            user = {'user': nobody.pw_uid, 'group': nobody.pw_gid, 'extra_groups': []}
            reached = subprocess.run(['test', '-x', tool_case.tool[0]], **user)
            if reached.returncode != 0:
                self.skipTest('user nobody has no way to the program')
        status, output, errors = self.run_tool('picture', 'info', *names, **user)
        self.assertEqual((status, errors), (1, ''))
        self.assertEqual(output.splitlines(),
                         [name + ': error 481 Invalid picture' for name in names])

    @natively
    def test_descriptors_are_not_used_up(self):
        self.write('日本.tga', pictures.tga(pictures.pattern(1, 1)))
        status, output, _ = self.run_tool('picture', 'info', *['日本.tga'] * 300)
        self.assertEqual((status, len(set(output.splitlines()))), (0, 1))
