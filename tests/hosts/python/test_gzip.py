"""The gzip reader, as a script uses it: bytes travel as byte strings."""

import gzip
import unittest
import zlib

from support import orvane
from orvane import from_byte_string, to_byte_string


class GZip(unittest.TestCase):
    def setUp(self):
        self.archive = orvane.create("orvGZipArchive")

    def uncompress(self, data):
        return self.archive.UncompressData(to_byte_string(data))

    def test_zlib_is_available(self):
        self.assertIs(self.archive.IsLibraryAvailable(), True)

    def test_a_file_of_any_bytes_is_read(self):
        data = bytes(range(256)) * 300
        self.assertEqual(self.uncompress(gzip.compress(data, mtime=77)), 0)
        self.assertEqual(from_byte_string(self.archive.UncompressedData), data)
        self.assertEqual((self.archive.ID1, self.archive.ID2), (31, 139))
        self.assertEqual((self.archive.CompressionMethod, self.archive.Flags), (8, 0))
        self.assertEqual(self.archive.ModificationTime, 77)
        self.assertEqual(self.archive.DataLen, len(data))
        self.assertEqual(self.archive.DataCRC32 & 0xFFFFFFFF, zlib.crc32(data))

    def test_a_header_with_texts_is_read(self):
        data = gzip.compress(b"data")
        named = data[:3] + b"\x1a" + data[4:9] + b"\x0a" + "файл.txt\0comment\0".encode("cp1251")
        self.assertEqual(self.uncompress(named + b"\x01\x80" + data[10:]), 0)
        self.assertEqual((self.archive.FileName, self.archive.Comment), ("файл.txt", "comment"))
        self.assertEqual(self.archive.HeaderCRC16, -32767)
        self.assertEqual(self.archive.OSCodeToString(self.archive.OS), "TOPS-20")
        self.assertEqual(self.archive.ExtraData, "")

    def test_refusals_are_codes_and_clear_the_fields(self):
        data = gzip.compress(b"data")
        self.assertEqual(self.uncompress(b"no gzip at all"), 1)
        self.assertEqual(self.uncompress(data[:-1] + b"\x80"), 7)
        self.assertEqual(self.uncompress(data[:3] + b"\x20" + data[4:]), 6)
        self.assertEqual(self.uncompress(data + b"\xff" * 4), 7)
        self.assertEqual((self.archive.ID1, self.archive.OS), (0, 255))
        self.assertEqual(self.archive.UncompressErrorCodeToString(7),
                         "Неверное значение длины даных")

    def test_the_magic_bytes_alone_raise_5_and_leave_the_fields_clear(self):
        with self.assertRaises(orvane.Error) as raised:
            self.uncompress(data=b"\x1f\x8b")
        self.assertEqual(raised.exception.number, 5)
        self.assertEqual((self.archive.ID1, self.archive.ID2, self.archive.OS), (0, 0, 255))

    def test_clear_empties_the_object(self):
        self.assertEqual(self.uncompress(gzip.compress(b"data")), 0)
        self.archive.Clear()
        self.assertEqual((self.archive.UncompressedData, self.archive.DataLen), ("", 0))


if __name__ == "__main__":
    unittest.main()
