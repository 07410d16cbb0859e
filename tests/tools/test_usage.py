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
