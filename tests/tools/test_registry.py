"""orvane registry: keys and values, and registry files in and out. On Linux in a store of the test's own."""

import json
import os
import subprocess

import tool_case
from tool_case import ToolCase, natively

HEADER = 'Windows Registry Editor Version 5.00\r\n\r\n'
KEY = r'HKCU\Software\Orvane Tool Test'
LONG_KEY = r'HKEY_CURRENT_USER\Software\Orvane Tool Test'


class RegistryCase(ToolCase):
    def setUp(self):
        super().setUp()
        self.environment = {**os.environ, 'ORVANE_REGISTRY_USER': str(self.folder / 'user'),
                            'ORVANE_REGISTRY_MACHINE': str(self.folder / 'machine')}
        if tool_case.on_windows:
            self.run_tool('registry', 'delete', '--recursive', KEY)
            self.addCleanup(self.run_tool, 'registry', 'delete', '--recursive', KEY)

    def registry(self, *words, status=0, given=b''):
        """What the command prints; its errors when `status` is not 0."""
        got, output, errors = self.captured([*tool_case.tool, 'registry', *words], given,
                                            env=self.environment)
        self.assertEqual(got, status, errors)
        self.assertEqual(output if status else errors, b'')
        return errors.decode() if status else output

    def text(self, *words):
        return self.registry(*words).decode()

    def import_text(self, text, encoding='utf-16', **options):
        self.write('in.reg', text.encode(encoding))
        return self.registry('import', 'in.reg', **options)

    def export_text(self, *words):
        data = self.registry('export', *words)
        self.assertEqual(data[:2], b'\xff\xfe')
        return data.decode('utf-16')


class Values(RegistryCase):
    def test_a_value_is_written_and_read(self):
        self.registry('set', KEY, 'name', 'text with  blanks')
        self.assertEqual(self.text('get', KEY, 'name'), 'text with  blanks\n')

    def test_every_type_has_its_form(self):
        for type_, words, shown in (
                ('string', ['a\\b"c'], 'a\\b"c\n'),
                ('expand', ['%PATH%'], '%PATH%\n'),
                ('multi', ['one', 'two words'], 'one\ntwo words\n'),
                ('multi', [], ''),
                ('dword', ['42'], '42\n'),
                ('dword', ['0xFFFFFFFF'], '4294967295\n'),
                ('dword', ['-1'], '4294967295\n'),
                ('qword', ['18446744073709551615'], '18446744073709551615\n'),
                ('qword', ['-2'], '18446744073709551614\n'),
                ('binary', ['00 01,fF', '7e'], '00 01 ff 7e\n'),
                ('binary', [], '\n'),
                ('none', ['0102'], '01 02\n'),
                ('REG_DWORD', ['7'], '7\n'),
                ('reg_sz', ['x'], 'x\n')):
            with self.subTest(type_, words=words):
                self.registry('set', KEY, 'v', '--type', type_, '--', *words)
                self.assertEqual(self.text('get', KEY, 'v'), shown)
                name = type_.lower().replace('reg_sz', 'string').removeprefix('reg_')
                self.assertEqual(json.loads(self.registry('get', '--json', KEY, 'v'))['type'], name)

    def test_the_default_value_has_no_name(self):
        self.registry('set', KEY, '@', 'first')
        for words in ([KEY], [KEY, ''], [KEY, '@']):
            self.assertEqual(self.text('get', *words), 'first\n')
        self.registry('set', KEY, '', 'second')
        self.assertEqual(self.text('get', LONG_KEY), 'second\n')
        self.registry('delete', KEY, '@')
        self.assertIn('error 2 ', self.registry('get', KEY, status=1))

    def test_names_outside_the_code_page_survive(self):
        name = '日本 \U0001F600 Ж é'
        key = KEY + '\\ключ 鍵'
        self.registry('set', key, name, name)
        self.assertEqual(self.text('get', key, name), name + '\n')
        self.assertIn(f'"{name}"="{name}"', self.export_text(key))
        self.assertEqual(self.text('list', KEY), '[ключ 鍵]\n')
        self.registry('delete', key, name)
        self.assertEqual(self.text('list', key), '')

    def test_names_are_found_in_any_case(self):
        self.registry('set', KEY, 'Имя', 'x')
        self.assertEqual(self.text('get', KEY.upper(), 'иМЯ'), 'x\n')

    def test_list_shows_sub_keys_and_then_values(self):
        self.registry('set', KEY + '\\b', 'x', '1')
        self.registry('set', KEY, 'n\n"', 'a\tb')
        self.registry('set', KEY, 'm', 'a', 'b c', '--type=multi')
        self.registry('set', KEY, 'd', '7', '--type=dword')
        self.assertEqual(sorted(self.text('list', KEY).splitlines()), [
            '"d"  dword  7', '"m"  multi  "a" "b c"', '"n\\n\\""  string  "a\\tb"', '[b]'])

    def test_json_has_an_object_a_line(self):
        self.registry('set', KEY + '\\b', 'x', '1')
        self.registry('set', KEY, 'm', 'a', 'b', '--type=multi')
        self.registry('set', KEY, 'q', '-1', '--type=qword')
        self.registry('set', KEY, 'h', '01 ff', '--type=binary')
        lines = [json.loads(line) for line in self.text('list', '--json', KEY).splitlines()]
        self.assertEqual(lines[0], {'key': 'b'})
        self.assertEqual(sorted(lines[1:], key=lambda each: each['name']), [
            {'name': 'h', 'type': 'binary', 'value': '01 ff'},
            {'name': 'm', 'type': 'multi', 'value': ['a', 'b']},
            {'name': 'q', 'type': 'qword', 'value': 2**64 - 1}])

    def test_deleting(self):
        self.registry('set', KEY + '\\a\\b', 'x', '1')
        self.registry('set', KEY + '\\a', 'x', '1')
        self.registry('delete', KEY + '\\a', 'x')
        self.assertIn('error 2 ', self.registry('delete', KEY + '\\a', 'x', status=1))
        self.assertIn('--recursive', self.registry('delete', KEY + '\\a', status=1))
        self.registry('delete', '--recursive', KEY + '\\a')
        self.assertIn('error 2 ', self.registry('list', KEY + '\\a', status=1))
        self.assertIn('error 2 ', self.registry('delete', KEY + '\\a', status=1))
        self.registry('delete', KEY)
        self.assertIn('root', self.registry('delete', '--recursive', 'HKCU', status=1))

    def test_failures_tell_key_code_and_text(self):
        errors = self.registry('get', KEY, 'none', status=1)
        self.assertRegex(errors, '^orvane: ' + LONG_KEY.replace('\\', '\\\\') + ': error 2 .+\n$')
        self.registry('set', KEY, 'x', '1')
        self.assertIn(LONG_KEY + ', "none": error 2 ', self.registry('get', KEY, 'none', status=1))

    def test_wrong_words_are_bad_usage(self):
        for words in ([], ['paint'], ['list'], ['list', KEY, 'x'], ['get'], ['get', KEY, 'a', 'b'],
                      ['set'], ['set', KEY], ['set', KEY, 'n'], ['set', KEY, 'n', 'a', 'b'],
                      ['set', KEY, 'n', 'x', '--type'], ['set', KEY, 'n', 'x', '--type=real'],
                      ['set', KEY, 'n', 'x', '--type=dword'],
                      ['set', KEY, 'n', '4294967296', '--type=dword'],
                      ['set', KEY, 'n', '-2147483649', '--type=dword'],
                      ['set', KEY, 'n', '0x', '--type=qword'],
                      ['set', KEY, 'n', '1 2', '--type=dword'],
                      ['set', KEY, 'n', '1', '--type=binary'],
                      ['set', KEY, 'n', '0 1', '--type=binary'],
                      ['set', KEY, 'n', '0g', '--type=binary'],
                      ['set', KEY, 'n', 'a', '', '--type=multi'],
                      ['delete'], ['delete', '--recursive', KEY, 'x'], ['export'],
                      ['import'], ['import', 'a', 'b'], ['import', '--utf8', 'a'],
                      ['list', 'HKXX\\a'], ['list', 'Software'], ['list', 'HKCU\\'],
                      ['list', 'HKCU\\\\a'], ['list', 'HKCU\\' + 'k' * 256]):
            with self.subTest(words):
                self.assertTrue(self.registry(*words, status=2).startswith('orvane: '))


class Files(RegistryCase):
    EVERY = (HEADER + f'[{LONG_KEY}]\r\n'
             '@="по умолчанию"\r\n'
             '"z"="C:\\\\x \\"y\\""\r\n'
             '"a"=dword:0000002a\r\n'
             '"lines"="one\r\ntwo\nthree"\r\n'
             '"bytes"=hex:00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,\\\r\n'
             '  16\r\n'
             '"none"=hex(0):\r\n'
             '"odd"=hex(1):41\r\n'
             '"expand"=hex(2):25,00,41,00,25,00,00,00\r\n'
             '"short"=hex(4):01,02\r\n'
             '"list"=hex(7):61,00,00,00,62,00,00,00,00,00\r\n'
             '"big"=hex(b):01,00,00,00,00,00,00,00\r\n'
             '"日本"="\U0001F600"\r\n'
             '\r\n'
             f'[{LONG_KEY}\\Sub]b]\r\n'
             '\r\n'
             f'[{LONG_KEY}\\Sub]b\\deeper]\r\n'
             '"x"=""\r\n'
             '\r\n')

    def sorted_blocks(self, text):
        """Wine has names in an order of its own."""
        return [sorted(block.split('\r\n"')) for block in text.split('\r\n\r\n')]

    def test_a_file_comes_back_line_for_line(self):
        self.import_text(self.EVERY)
        exported = self.export_text(KEY)
        if tool_case.on_windows:
            self.assertEqual(self.sorted_blocks(exported), self.sorted_blocks(self.EVERY))
        else:
            self.assertEqual(exported, self.EVERY)

    def test_files_in_utf8_come_in_too(self):
        for encoding in ('utf-8', 'utf-8-sig'):
            self.import_text(self.EVERY.replace('\r\n\r\n', '\r\n; a comment\n\n'), encoding)
            self.assertEqual(self.sorted_blocks(self.export_text(KEY)),
                             self.sorted_blocks(self.EVERY))
            self.registry('delete', '--recursive', KEY)

    def test_the_older_form_is_in_the_code_page(self):
        self.import_text(f'REGEDIT4\n\n[{KEY}]\n"имя"="Ж"\n"e"=hex(2):c6,00\n', 'cp1251')
        self.assertEqual(self.text('get', KEY, 'имя'), 'Ж\n')
        self.assertEqual(self.text('get', KEY, 'e'), 'Ж\n')

    def test_export_writes_a_file_or_the_output(self):
        self.import_text(self.EVERY)
        self.registry('export', KEY, 'out.reg')
        data = (self.folder / 'out.reg').read_bytes()
        self.assertEqual(self.registry('export', KEY, '-'), data)
        self.assertEqual(self.registry('export', KEY), data)
        self.registry('export', '--utf8', KEY, 'out8.reg')
        text = (self.folder / 'out8.reg').read_bytes().decode()
        self.assertEqual(text.encode('utf-16-le'), data[2:])

    @natively
    def test_export_keeps_the_mode_and_writes_behind_links(self):
        self.import_text(self.EVERY)
        data = self.registry('export', KEY)
        (self.folder / 'below').mkdir()
        kept = self.folder / 'below' / 'kept.reg'
        kept.write_bytes(b'former')
        for mode in (0o600, 0o640, 0o444):
            kept.chmod(mode)
            self.registry('export', KEY, 'below/kept.reg')
            self.assertEqual(kept.read_bytes(), data)
            self.assertEqual(kept.stat().st_mode & 0o7777, mode)
        link = self.folder / 'link.reg'
        link.symlink_to('second.reg')
        second = self.folder / 'second.reg'
        second.symlink_to(kept)
        kept.chmod(0o600)
        kept.write_bytes(b'former')
        self.registry('export', KEY, 'link.reg')
        self.assertTrue(link.is_symlink() and second.is_symlink())
        self.assertEqual(kept.read_bytes(), data)
        self.assertEqual(kept.stat().st_mode & 0o7777, 0o600)
        kept.unlink()
        self.registry('export', KEY, 'link.reg')
        self.assertEqual(kept.read_bytes(), data)
        second.unlink()
        second.symlink_to('link.reg')
        self.registry('export', KEY, 'link.reg', status=1)
        self.assertTrue(link.is_symlink())

    def test_import_reads_the_input(self):
        self.registry('import', '-', given=self.EVERY.encode())
        self.assertEqual(self.text('get', KEY, 'a'), '42\n')

    def test_deletions(self):
        self.import_text(self.EVERY)
        self.import_text(HEADER + f'[{KEY}]\r\n@=-\r\n"a"=-\r\n"never"=-\r\n'
                         f'[-{KEY}\\Sub]b]\r\n[-{KEY}\\Never]\r\n')
        self.assertIn('error 2 ', self.registry('get', KEY, 'a', status=1))
        self.assertIn('error 2 ', self.registry('get', KEY, status=1))
        self.assertNotIn('[', self.text('list', KEY))

    def test_a_key_without_values_is_made(self):
        self.import_text(HEADER + f'[{KEY}\\Empty]\r\n')
        self.assertEqual(self.text('list', KEY), '[Empty]\n')

    def test_a_bad_line_is_named_and_nothing_imported(self):
        for line in ('junk', '"a"="b', '"a"=dword:x', '"a"=hex:1,', '[HKXX\\a]', '[HKCU'):
            with self.subTest(line):
                errors = self.import_text(HEADER + f'[{KEY}]\r\n"good"="x"\r\n{line}\r\n', status=1)
                self.assertTrue(errors.startswith('orvane: in.reg: line 5: '), errors)
                self.registry('list', KEY, status=1)
        self.assertIn('standard input: line 1: ',
                      self.registry('import', '-', given=b'junk', status=1))

    def test_a_file_that_is_not_there_is_a_failure(self):
        self.assertIn('none.reg', self.registry('import', 'none.reg', status=1))
        self.assertIn('error 2 ', self.registry('export', KEY, 'out.reg', status=1))
        self.assertNotIn('out.reg', self.names())

    def test_ten_megabytes_come_back(self):
        self.write('big.reg', (HEADER + f'[{KEY}]\r\n"big"=hex:' + '5a,' * (10 << 20) + '5a\r\n')
                   .encode())
        self.registry('import', 'big.reg')
        self.assertEqual(self.registry('get', KEY, 'big').split(), [b'5a'] * ((10 << 20) + 1))

    @natively
    def test_a_failure_of_the_store_undoes_the_import(self):
        self.registry('set', KEY, 'kept', 'x')
        before = self.export_text(KEY)
        errors = self.import_text(HEADER + f'[-{KEY}]\r\n[{KEY}]\r\n"new"="x"\r\n'
                                  '[HKEY_USERS\\none]\r\n@="x"\r\n', status=1)
        self.assertIn('HKEY_USERS\\none: error ', errors)
        self.assertEqual(self.export_text(KEY), before)


class Rights(RegistryCase):
    @natively
    def test_without_rights_the_machines_registry_is_read_only(self):
        if os.geteuid() != 0:
            self.skipTest('only root can drop its rights')
        self.registry('set', r'HKLM\Software\Test', 'name', 'x')
        os.chmod(self.folder, 0o755)
        dropped = ['setpriv', '--reuid=65534', '--regid=65534', '--clear-groups', *tool_case.tool]
        done = subprocess.run([*dropped, 'registry', 'get', r'HKLM\Software\Test', 'name'],
                              env=self.environment, capture_output=True)
        self.assertEqual((done.returncode, done.stdout), (0, b'x\n'), done.stderr)
        done = subprocess.run([*dropped, 'registry', 'set', r'HKLM\Software\Test', 'name', 'y'],
                              env=self.environment, capture_output=True)
        self.assertEqual((done.returncode, done.stdout), (1, b''))
        self.assertIn(b'HKEY_LOCAL_MACHINE\\Software\\Test: error 5 ', done.stderr)
        self.assertEqual(self.text('get', r'HKLM\Software\Test', 'name'), 'x\n')
