"""The walk of the library's gzip reader over a file, in plain steps: which data it takes, and with what outcome."""

import struct
import zlib

NO_GZIP, CRC_MISMATCH, EXTRA_DATA, FILE_NAME, COMMENT, FLAGS, DATA_LENGTH = range(1, 8)


def number(data, form):
    """A little-endian number, 0 when there are too few bytes for it."""
    return struct.unpack(form, data)[0] if len(data) == struct.calcsize(form) else 0


def data_of(body, length):
    """What a body inflates to, cut or filled up to a length."""
    inflater = zlib.decompressobj(-15)
    data = b''
    try:
        while body and len(data) < length and not inflater.eof:
            piece = inflater.decompress(body, length - len(data))
            data += piece
            body = inflater.unconsumed_tail
    except zlib.error:
        return None
    return data + bytes(length - len(data))


def outcome(data):
    """(code, data) of a file of at least ten bytes; damaged bodies are the code's matter only."""
    if data[:2] != b'\x1f\x8b':
        return NO_GZIP, b''
    flags, rest = data[3], data[10:]
    if flags & 0xe0:
        return FLAGS, b''
    if flags & 4:
        length = number(rest[:4], '<i')
        if not 1 <= length <= len(rest):
            return EXTRA_DATA, b''
        rest = rest[length:]
    for flag, code in ((8, FILE_NAME), (16, COMMENT)):
        if flags & flag:
            if b'\0' not in rest:
                return code, b''
            rest = rest[rest.index(b'\0') + 1:]
    if flags & 2:
        rest = rest[2:]
    length, rest = number(rest[-4:], '<i'), rest[:-4]
    if length < 0:
        return DATA_LENGTH, b''
    crc, body = number(rest[-4:], '<I'), rest[:-4]
    found = data_of(body, length)
    if found is None or zlib.crc32(found) != crc:
        return CRC_MISMATCH, b''
    return 0, found
