"""orvane gzip info and gzip cat: real files through the library's gzip reader."""

import gzip
import json
import os
import pathlib
import shutil
import subprocess
import zlib

import gzip_walk
import tool_case
from tool_case import ToolCase, natively

_CORPUS = pathlib.Path(os.environ.get('ORVANE_CORPUS') or
                       pathlib.Path(__file__).parents[2] / '..' / 'shared' / 'corpus')


class GZip(ToolCase):
    def json_of(self, *names, status=0):
        code, output, errors = self.run_tool('gzip', 'info', '--json', *names)
        self.assertEqual((code, errors), (status, ''))
        return [json.loads(line) for line in output.splitlines()]

    def cat(self, name, tool=None, in_folder='.', **options):
        done = subprocess.run([*(tool or tool_case.tool), 'gzip', 'cat', name],
                              cwd=self.folder / in_folder,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, **options)
        return done.returncode, done.stdout, done.stderr.decode()

    def test_a_file_is_described_in_a_line(self):
        data = gzip.compress(b'some data', mtime=5)
        self.write('a.gz', data)
        self.assert_prints(['gzip', 'info', 'a.gz'],
                           ['a.gz: 9 bytes from %d, CRC-32 0x%08X, method 8, flags 0x00, '
                            'extra flags 0x02, time 5, OS 255 Unknown'
                            % (len(data), zlib.crc32(b'some data'))])

    def test_every_field_of_a_header_is_told(self):
        plain = gzip.compress(b'x')
        header = b'\x1f\x8b\x08\x1f\x01\x02\x03\x04\x00\x03'
        self.write('a.gz', header + b'\x06\0\0\0ab' + b'name.txt\0a comment\0\x34\x82' + plain[10:])
        line, = self.run_tool('gzip', 'info', 'a.gz')[1].splitlines()
        self.assertEqual(line.partition(', OS ')[2],
                         '3 Unix, extra data of 6 bytes, name name.txt, comment a comment, '
                         'header CRC 0x8234')
        self.assertEqual(self.json_of('a.gz'), [{
            'file': 'a.gz', 'size': len(plain) + 27, 'dataSize': 1, 'compressionMethod': 8,
            'flags': 31, 'modificationTime': 0x04030201, 'extraFlags': 0, 'os': 3,
            'osName': 'Unix', 'extraSize': 6, 'fileName': 'name.txt', 'comment': 'a comment',
            'headerCRC16': 0x8234 - 0x10000, 'dataLen': 1,
            'dataCRC32': (zlib.crc32(b'x') ^ 0x80000000) - 0x80000000}])

    def test_names_are_the_bytes_of_the_file(self):
        plain = gzip.compress(b'x')
        for name in ('имя'.encode(), '名'.encode(), b'caf\xe9'):
            self.write('a.gz', plain[:3] + b'\x08' + plain[4:10] + name + b'\0' + plain[10:])
            self.assertEqual(self.json_of('a.gz')[0]['fileName'], name.decode(errors='replace'))

    def test_a_refused_file_has_its_code_and_text_in_its_line(self):
        good = gzip.compress(b'data')
        self.write('text', b'no gzip file at all')
        self.write('damaged', good[:-5] + bytes([good[-5] ^ 1]) + good[-4:])
        self.write('short', good[:2])
        self.write('good', good)
        status, output, errors = self.run_tool('gzip', 'info', 'text', 'damaged', 'short', 'good')
        lines = output.splitlines()
        self.assertEqual((status, errors), (1, ''))
        self.assertEqual(lines[:3], [
            'text: code 1 Данные не являются GZip архивом',
            'damaged: code 2 CRC32 данных не совпадают с CRC32, указанным в архиве',
            'short: error 5 Invalid procedure call or argument'])
        self.assertTrue(lines[3].startswith('good: 4 bytes from '), lines[3])
        self.assertEqual(self.json_of('text', 'short', status=1), [
            {'file': 'text', 'error': {'code': 1,
                                       'description': 'Данные не являются GZip архивом'}},
            {'file': 'short', 'error': {'error': 5,
                                        'description': 'Invalid procedure call or argument'}}])

    def test_a_file_that_cannot_be_read_is_told(self):
        status, output, _ = self.run_tool('gzip', 'info', 'gone')
        self.assertEqual(status, 1)
        self.assertRegex(output, r'^gone: [^:]+\n$')
        self.assertEqual(list(self.json_of('gone', status=1)[0]['error']), ['description'])
        status, output, errors = self.cat('gone')
        self.assertEqual((status, output), (1, b''))
        self.assertTrue(errors.startswith('orvane: gone: '), errors)

    def test_the_data_comes_out_as_it_is(self):
        data = bytes(range(256)) * 500 + b'\r\n\n\r\x1a\0'
        self.write('a.gz', gzip.compress(data))
        self.assertEqual(self.cat('a.gz'), (0, data, ''))
        self.write('empty.gz', gzip.compress(b''))
        self.assertEqual(self.cat('empty.gz'), (0, b'', ''))

    def test_a_refused_file_has_no_data(self):
        self.write('a.gz', gzip.compress(b'one') + gzip.compress(b'three'))
        self.assertEqual(self.cat('a.gz'), (
            1, b'', 'orvane: a.gz: code 2 CRC32 данных не совпадают с CRC32, указанным в архиве\n'))

    def test_names_that_look_like_options(self):
        self.write('-x', gzip.compress(b'data'))
        status, output, errors = self.run_tool('gzip', 'cat', '--', '-x')
        self.assertEqual((status, output, errors), (0, 'data', ''))

    def test_every_file_of_the_corpus_as_gzip_reads_it(self):
        files = sorted((_CORPUS / 'pictures' / 'gzip').glob('*'))
        if not files:
            self.skipTest('the corpus is not there (%s)' % _CORPUS)
        read = 0
        for path in files:
            with self.subTest(path.name):
                file = path.read_bytes()
                code, data = gzip_walk.outcome(file)
                self.write('a.gz', file)
                status, output, errors = self.cat('a.gz')
                if code:
                    self.assertEqual((status, output), (1, b''))
                    self.assertIn(': code %d ' % code, errors)
                    continue
                self.assertEqual((status, errors), (0, ''))
                self.assertEqual(output, data)
                peer = subprocess.run(['gzip', '-dc'], input=file, stdout=subprocess.PIPE,
                                      stderr=subprocess.PIPE)
                # A file of several members may be one with the last one's trailer.
                if peer.returncode == 0 and len(peer.stdout) == len(data):
                    self.assertEqual(output, peer.stdout)
                    read += 1
        self.assertGreater(read, 40)

    def copied_library(self, *names):
        """The program and these libraries in the test's folder."""
        place = pathlib.Path(tool_case.tool[-1])
        for name in (place.name, *names):
            shutil.copy(place.parent / name, self.folder)
        return [*tool_case.tool[:-1], str(self.folder / place.name)]

    def test_without_zlib_every_file_is_refused_with_code_8(self):
        self.write('a.gz', gzip.compress(b'data'))
        if tool_case.on_windows:
            answer = self.cat('a.gz', self.copied_library('OrvaneBase0301.DLL'))
        else:
            self.write('libz.so.1', b'no library')
            answer = self.cat('a.gz', env={**os.environ, 'LD_LIBRARY_PATH': str(self.folder)})
        self.assertEqual(answer, (1, b'', 'orvane: a.gz: code 8 Неизвестная ошибка\n'))

    def test_zlib_beside_the_library_is_enough(self):
        self.write('a.gz', gzip.compress(b'data'))
        if tool_case.on_windows:
            tool = self.copied_library('OrvaneBase0301.DLL', 'ZLibStdCall.DLL')
            # The program's own folder is searched for bare names, so it lies elsewhere.
            os.mkdir(self.folder / 'program')
            program = shutil.move(tool[-1], self.folder / 'program')
            library = 'Z:' + str(self.folder / 'OrvaneBase0301.DLL').replace('/', '\\')
            answer = self.cat('../a.gz', [*tool[:-1], program], in_folder='program',
                              env={**os.environ, 'ORVANE_LIBRARY': library})
        else:
            self.skipTest('the system has a zlib of its own that is found first')
        self.assertEqual(answer, (0, b'data', ''))

    @natively
    def test_a_reader_that_goes_away_ends_the_tool_quietly(self):
        self.write('a.gz', gzip.compress(os.urandom(1 << 20)))
        done = subprocess.run(['bash', '-c', '"$0" gzip cat a.gz | head -c 1 >&2; exit ${PIPESTATUS[0]}',
                               *tool_case.tool], cwd=self.folder, stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, len(done.stderr)), (141, 1))
