"""orvane gzip info and gzip cat: real files through the library's gzip reader."""

import gzip
import json
import os
import pathlib
import shutil
import struct
import subprocess
import zlib

import gzip_walk
import tool_case
from tool_case import ToolCase, natively

_CORPUS = pathlib.Path(os.environ.get('ORVANE_CORPUS') or
                       pathlib.Path(__file__).parents[2] / '..' / 'shared' / 'corpus')


def loaded_zlib():
    """The file of the zlib that this interpreter's module uses."""
    with open('/proc/self/maps', encoding='utf-8') as maps:
        return next(line.split(maxsplit=5)[5].rstrip('\n') for line in maps if '/libz.so' in line)


def crc_of_nuls(count):
    """The CRC-32 of that many NULs, a mebibyte at a time."""
    crc, block = 0, bytes(1 << 20)
    for _ in range(count >> 20):
        crc = zlib.crc32(block, crc)
    return zlib.crc32(block[:count & (1 << 20) - 1], crc)


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
                           ['a.gz: code 0 Операция выполнена успешно, 9 bytes from %d, '
                            'CRC-32 0x%08X, method 8, flags 0x00, extra flags 0x02, time 5, '
                            'OS 255 Unknown'
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
            'file': 'a.gz', 'size': len(plain) + 27,
            'verdict': {'code': 0, 'description': 'Операция выполнена успешно'},
            'dataSize': 1, 'compressionMethod': 8,
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
            'text: code 1 Данные не являются GZip архивом, 19 bytes',
            'damaged: code 2 CRC32 данных не совпадают с CRC32, указанным в архиве, %d bytes'
            % len(good),
            'short: error 5 Invalid procedure call or argument, 2 bytes'])
        self.assertTrue(lines[3].startswith('good: code 0 Операция выполнена успешно, '
                                            '4 bytes from %d, ' % len(good)), lines[3])
        self.assertEqual(self.json_of('text', 'short', status=1), [
            {'file': 'text', 'size': 19,
             'error': {'code': 1, 'description': 'Данные не являются GZip архивом'}},
            {'file': 'short', 'size': 2,
             'error': {'error': 5, 'description': 'Invalid procedure call or argument'}}])

    def test_the_sizes_are_those_of_file_and_data(self):
        data = b'some data'
        good = gzip.compress(data)
        body, header = good[10:-8], good[:10]
        filled = data + bytes(30)
        trailer = struct.pack('<II', zlib.crc32(filled), len(filled))
        named = header[:3] + b'\x08' + header[4:] + b'name\0'
        for name, file, size, length in (
                ('good', good, len(data), len(data)),
                ('NULs behind the data', header + body + trailer, len(filled), len(data)),
                ('a name', named + body + trailer, len(filled), len(data)),
                ('no data', gzip.compress(b''), 0, 0),
                ('a header alone', header, 0, 0),
                ('three bytes behind it', header + b'abc', 0, 0),
                ('three bytes behind a name', named + b'abc', 0, 0)):
            with self.subTest(name):
                self.write('a.gz', file)
                facts, = self.json_of('a.gz')
                self.assertEqual((facts['size'], facts['dataSize'], facts['dataLen']),
                                 (len(file), size, length))
                self.assertEqual(len(self.cat('a.gz')[1]), size)
                self.assertIn(', %d bytes from %d, ' % (size, len(file)),
                              self.run_tool('gzip', 'info', 'a.gz')[1])

    def test_a_file_too_long_for_a_text_is_told_with_its_size(self):
        size = 1 << 31
        self.write('big.gz', gzip.compress(b'data'))
        self.write('good.gz', gzip.compress(b'data'))
        os.truncate(self.folder / 'big.gz', size)
        if os.stat(self.folder / 'big.gz').st_blocks * 512 > 1 << 20:
            self.skipTest('the file system has no sparse files')
        status, output, errors = self.run_tool('gzip', 'info', 'big.gz', 'good.gz')
        lines = output.splitlines()
        self.assertEqual((status, lines[0], errors), (1, 'big.gz: out of memory, %d bytes' % size, ''))
        self.assertIn('code 0', lines[1])
        self.assertEqual(self.json_of('big.gz', status=1),
                         [{'file': 'big.gz', 'size': size, 'error': {'description': 'out of memory'}}])
        self.assertEqual(self.cat('big.gz'), (1, b'', 'orvane: big.gz: out of memory\n'))

    @natively
    def test_a_file_without_an_end_is_out_of_memory(self):
        self.assertEqual(self.run_tool('gzip', 'info', '/dev/zero'),
                         (1, '/dev/zero: out of memory\n', ''))

    @natively
    def test_a_short_file_with_a_gigabyte_of_nuls_is_described_without_a_copy_of_them(self):
        length = 0x3FFFFFFE
        crc = crc_of_nuls(length)
        self.write('a.gz', b'\x1f\x8b\x08\0\0\0\0\0\0\3\3\0' + struct.pack('<II', crc, length))
        with open(self.folder / 'output', 'w+b') as output:
            child = subprocess.Popen([*tool_case.tool, 'gzip', 'info', '--json', 'a.gz'],
                                     cwd=self.folder, stdout=output)
            _, status, usage = os.wait4(child.pid, 0)
            child.returncode = os.waitstatus_to_exitcode(status)
            output.seek(0)
            facts = json.loads(output.read())
        self.assertEqual(child.returncode, 0)
        self.assertEqual((facts['size'], facts['dataSize'], facts['dataLen']), (20, length, 0))
        # The library's own text takes 2 GiB.
        self.assertLess(usage.ru_maxrss, 3 << 20)

    def test_a_file_that_cannot_be_read_is_told(self):
        status, output, _ = self.run_tool('gzip', 'info', 'gone')
        self.assertEqual(status, 1)
        self.assertRegex(output, r'^gone: [^:,]+\n$')
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
            # What the search finds first is no library; the program's own folder has none either.
            places = {}
            for name in ('search', 'library', 'program'):
                places[name] = self.folder / name
                places[name].mkdir()
            self.write('search/libz.so.1', b'no library')
            built = pathlib.Path(tool_case.tool[0])
            program = shutil.copy(built, places['program'])
            library = shutil.copy(built.parent / 'libOrvaneBase0301.so', places['library'])
            environment = {**os.environ, 'LD_LIBRARY_PATH': str(places['search']),
                           'ORVANE_LIBRARY': library}
            self.assertEqual(self.cat('a.gz', [program], env=environment)[0], 1)
            shutil.copy(loaded_zlib(), places['library'] / 'libz.so.1')
            answer = self.cat('a.gz', [program], env=environment)
        self.assertEqual(answer, (0, b'data', ''))

    @natively
    def test_a_reader_that_goes_away_ends_the_tool_quietly(self):
        self.write('a.gz', gzip.compress(os.urandom(1 << 20)))
        done = subprocess.run(['bash', '-c', '"$0" gzip cat a.gz | head -c 1 >&2; exit ${PIPESTATUS[0]}',
                               *tool_case.tool], cwd=self.folder, stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, len(done.stderr)), (141, 1))
