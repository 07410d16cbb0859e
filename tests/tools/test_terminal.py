"""Readers that go away, and the progress bar on a terminal."""

import os
import signal
import subprocess

import pictures
import tool_case
from tool_case import ToolCase, natively


def screen(data):
    """The lines that a terminal shows after `data`: a carriage return goes back to the line's start."""
    lines = []
    for row in data.decode().replace('\r\n', '\n').split('\n'):
        cells = []
        for part in row.split('\r'):
            cells[:len(part)] = part
        lines.append(''.join(cells).rstrip())
    return lines


class ReaderGoes(ToolCase):
    def assert_ends_quietly(self, process):
        errors = process.stderr.read()
        process.stderr.close()
        self.assertEqual(errors, b'')
        self.assertEqual(process.wait(), 0 if tool_case.on_windows else -signal.SIGPIPE)

    def start(self, *words):
        return subprocess.Popen([*tool_case.tool, *words], cwd=self.folder,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, bufsize=0)

    def test_after_the_first_line(self):
        self.write('a.tga', pictures.tga(pictures.pattern(1, 1)))
        # More than a pipe holds.
        process = self.start('picture', 'info', *['a.tga'] * 3000)
        self.assertTrue(process.stdout.read(1))
        process.stdout.close()
        self.assert_ends_quietly(process)

    @natively
    def test_before_the_first_line(self):
        read_end, write_end = os.pipe()
        os.close(read_end)
        process = subprocess.Popen([*tool_case.tool, 'args'], stdout=write_end,
                                   stderr=subprocess.PIPE)
        os.close(write_end)
        self.assert_ends_quietly(process)

    @natively
    def test_when_the_signal_is_ignored(self):
        process = subprocess.Popen(
            ['sh', '-c', "trap '' PIPE; exec \"$@\"", 'sh', *tool_case.tool, 'picture', 'info',
             *['gone'] * 3000], stdout=subprocess.PIPE, stderr=subprocess.PIPE, bufsize=0)
        process.stdout.read(1)
        process.stdout.close()
        self.assert_ends_quietly(process)


class ProgressBar(ToolCase):
    def on_terminal(self, files, output=subprocess.PIPE):
        """stdout (when it isn't the terminal, too) and what the terminal that stderr is received."""
        self.write('a.tga', pictures.tga(pictures.pattern(1, 1)))
        terminal, end = os.openpty()
        process = subprocess.Popen([*tool_case.tool, 'picture', 'info', *['a.tga'] * files],
                                   cwd=self.folder, stderr=end,
                                   stdout=end if output is None else output)
        os.close(end)
        received = b''
        try:
            while data := os.read(terminal, 65536):
                received += data
        except OSError:  # that is how a terminal ends
            pass
        os.close(terminal)
        lines = process.communicate()[0]
        self.assertEqual(process.returncode, 0)
        return lines, received

    @natively
    def test_grows_from_file_to_file_and_is_erased(self):
        lines, received = self.on_terminal(40)
        self.assertEqual(lines.count(b'\n'), 40)
        states = received.split(b'\r')
        self.assertIn(b'[' + b'-' * 40 + b']   0%', states)
        self.assertIn(b'[' + b'#' * 20 + b'-' * 20 + b']  50%', states)
        self.assertIn(b'[' + b'#' * 39 + b'-' * 1 + b']  97%', states)
        self.assertEqual(screen(received), [''])

    @natively
    def test_few_files_have_none(self):
        lines, received = self.on_terminal(19)
        self.assertEqual((lines.count(b'\n'), received), (19, b''))

    @natively
    def test_leaves_the_lines_of_the_same_terminal_whole(self):
        _, received = self.on_terminal(20, output=None)
        self.assertIn(b'] ', received)
        line = 'a.tga: Truevision Targa, 1 x 1, 24 bits per pixel'
        self.assertEqual(screen(received), [line] * 20 + [''])

    @natively
    def test_is_erased_when_the_reader_goes(self):
        read_end, write_end = os.pipe()
        os.close(read_end)
        self.write('a.tga', pictures.tga(pictures.pattern(1, 1)))
        terminal, end = os.openpty()
        process = subprocess.Popen([*tool_case.tool, 'picture', 'info', *['a.tga'] * 20],
                                   cwd=self.folder, stderr=end, stdout=write_end)
        os.close(write_end)
        os.close(end)
        self.assertEqual(process.wait(), -signal.SIGPIPE)
        self.assertEqual(screen(os.read(terminal, 65536)), [''])
        os.close(terminal)

    def test_without_a_terminal_there_is_none(self):
        self.write('a.tga', pictures.tga(pictures.pattern(1, 1)))
        status, output, errors = self.run_tool('picture', 'info', *['a.tga'] * 30)
        self.assertEqual((status, output.count('\n'), errors), (0, 30, ''))
