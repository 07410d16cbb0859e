"""Byte strings: texts that hold bytes by the library's code page."""

# Windows-1251, in which the byte 0x98 stands for the control character of the same number.
_UNITS = [chr(0x98) if byte == 0x98 else bytes([byte]).decode("cp1251") for byte in range(256)]
_BYTES = {ord(unit): byte for byte, unit in enumerate(_UNITS)}
_UNKNOWN = ord("?")


def to_byte_string(data: bytes) -> str:
    """The text that stands for bytes where the library takes a byte string."""
    return "".join([_UNITS[byte] for byte in data])


def from_byte_string(text: str) -> bytes:
    """The bytes of a byte string; units that the code page lacks are question marks."""
    units = text.encode("utf-16-le", "surrogatepass")
    return bytes([_BYTES.get(units[at] | units[at + 1] << 8, _UNKNOWN)
                  for at in range(0, len(units), 2)])
