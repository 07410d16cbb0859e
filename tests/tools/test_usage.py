"""Options of the tool itself, wrong command lines, and output that can't be written."""

import shutil
import subprocess

import tool_case
from tool_case import ToolCase, natively


class Usage(ToolCase):
    def assert_bad_usage(self, *words):
        status, output, errors = self.run_tool(*words)
        self.assertEqual((status, output), (2, ''))
        complaint, first, *_ = errors.splitlines()
        self.assertTrue(complaint.startswith('orvane: '), complaint)
        self.assertTrue(first.startswith('usage: orvane '), first)
        return complaint

    def test_help_explains_the_commands(self):
        status, output, errors = self.run_tool('--help')
        self.assertEqual((status, errors), (0, ''))
        for text in ('orvane args', 'picture info [--json] FILES', 'picture convert IN OUT',
                     'picture show [-o FILE] FILES', 'gzip info [--json] FILES', 'gzip cat FILE',
                     'Exit status'):
            self.assertIn(text, output)

    def test_the_version_is_the_librarys(self):
        self.assertEqual(self.run_tool('--version'), (0, 'orvane, library 3.01.0251\n', ''))

    def test_no_command_is_bad_usage(self):
        self.assert_bad_usage()

    def test_unknown_commands_are_bad_usage(self):
        self.assertIn('paint', self.assert_bad_usage('paint'))
        self.assertIn('paint', self.assert_bad_usage('picture', 'paint'))
        self.assertIn('paint', self.assert_bad_usage('gzip', 'paint'))
        self.assert_bad_usage('--json')

    def test_help_and_version_stand_alone(self):
        self.assert_bad_usage('--help', 'x')
        self.assert_bad_usage('--version', 'x')
        self.assert_bad_usage('gzip', 'info', '--help', 'x')

    def assert_helps(self, words, *texts):
        status, output, errors = self.run_tool(*words)
        self.assertEqual((status, errors), (0, ''), words)
        self.assertTrue(output.startswith('usage: orvane %s ' % ' '.join(words[:-1])), output)
        for text in texts:
            self.assertIn(text, output)
        return output

    def test_help_on_every_command(self):
        told = {
            'args': 'the number of', 'describe': 'ProgID', 'register': 'by name',
            'unregister': 'removes', 'picture info': 'typeName', 'picture convert': '.ppm',
            'picture show': 'contact-sheet.png', 'gzip info': 'verdict', 'gzip cat': 'the data',
            'registry list': 'sub-keys', 'registry get': 'default value', 'registry set': 'qword',
            'registry delete': '--recursive with', 'registry export': 'UTF-16',
            'registry import': 'registry file'}
        everything = self.run_tool('--help')[1]
        listed = [line[7:].removeprefix('orvane ') for line in everything.partition('\n\n')[0].splitlines()]
        self.assertEqual(len(listed), len(told) + 2, 'no command without a row here')
        for name, text in told.items():
            with self.subTest(name):
                output = self.assert_helps([*name.split(), '--help'], text)
                usage, empty, *lines = output.splitlines()
                self.assertIn(usage.removeprefix('usage: orvane '), listed)
                self.assertEqual(empty, '')
                for line in lines:
                    self.assertIn(line, everything)
                self.assertEqual(self.assert_helps([*name.split(), '-h']), output)

    def test_help_on_a_group_tells_of_all_its_commands(self):
        for group, commands in (('picture', ['info', 'convert', 'show']), ('gzip', ['info', 'cat']),
                                ('registry', ['list', 'get', 'set', 'delete', 'export', 'import'])):
            with self.subTest(group):
                output = self.assert_helps([group, '--help'])
                usage, _, rest = output.partition('\n\n')
                self.assertEqual([line[7:].split()[:3] for line in usage.splitlines()],
                                 [['orvane', group, command] for command in commands])
                for command in commands:
                    self.assertRegex(rest, r'(?m)^%s %s  +\w' % (group, command))
        self.assertIn('HKCU', self.assert_helps(['registry', 'set', '--help']))

    def test_help_on_what_is_no_command_is_bad_usage(self):
        self.assertIn('paint', self.assert_bad_usage('paint', '--help'))
        self.assertIn('paint', self.assert_bad_usage('picture', 'paint', '--help'))

    def test_a_word_behind_others_asks_for_no_help(self):
        self.assertEqual(self.run_tool('args', 'x', '--help')[1].splitlines()[0], 'count  3')
        self.assertIn('"--help"', self.run_tool('args', '--', '--help')[1])

    def test_missing_words_are_bad_usage(self):
        for words in (['picture'], ['picture', 'info'], ['picture', 'info', '--json'],
                      ['picture', 'info', '--'], ['picture', 'convert'],
                      ['picture', 'convert', 'a.tga'], ['picture', 'convert', 'a', 'b.bmp', 'c'],
                      ['picture', 'show'], ['picture', 'show', '-o'], ['picture', 'show', '-o', 'a.png'],
                      ['picture', 'show', '-o', 'a.jpg', 'b.tga'], ['picture', 'show', '-x', 'b.tga'],
                      ['gzip'], ['gzip', 'info'], ['gzip', 'info', '--json'], ['gzip', 'cat'],
                      ['gzip', 'cat', 'a.gz', 'b.gz']):
            with self.subTest(words):
                self.assert_bad_usage(*words)

    def test_unknown_options_are_bad_usage(self):
        self.assertIn('--yaml', self.assert_bad_usage('picture', 'info', '--yaml', 'a.tga'))
        self.assertIn('-v', self.assert_bad_usage('picture', 'info', '-v', 'a.tga'))
        self.assertIn('-v', self.assert_bad_usage('gzip', 'info', '-v', 'a.gz'))
        self.assertIn('--json', self.assert_bad_usage('gzip', 'cat', '--json', 'a.gz'))

    def test_another_extension_is_bad_usage(self):
        for name in ('b.tif', 'b', '.ppm', 'ppm', ''):
            with self.subTest(name):
                self.assert_bad_usage('picture', 'convert', 'a.tga', name)

    @natively
    def test_a_complaint_shows_no_control_characters(self):
        self.assertIn('a\\x1B[1m', self.assert_bad_usage('a\x1b[1m'))

    @natively
    def test_output_that_cannot_be_written_is_a_failure(self):
        with open('/dev/full', 'wb') as full:
            done = subprocess.run([*tool_case.tool, 'args'], stdout=full, stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, b'orvane: standard output: No space left on device\n')

    @natively
    def test_closed_output_is_a_failure(self):
        done = subprocess.run(['sh', '-c', 'exec "$0" args >&-', *tool_case.tool],
                              stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, b'orvane: standard output: Bad file descriptor\n')

    @natively
    def test_without_the_library_it_says_so(self):
        alone = shutil.copy(tool_case.tool[0], self.folder)
        done = subprocess.run([alone, 'args'], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stdout), (1, b''))
        self.assertIn(b'OrvaneBase0301', done.stderr)
        done = subprocess.run([alone, '--help'], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stderr), (0, b''))
