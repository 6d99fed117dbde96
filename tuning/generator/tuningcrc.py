# The store's 64-bit name hash, computed by the generator so that generated code holds member and module hashes as
# literals.
"""Name hash of the tuning store, bit for bit as the store computes it at run time.

The register runs right-shifting on a table built from the polynomial 0x42F0E1EBA9EA3693 as it stands (not
bit-reversed), starts inverted, takes the name's bytes and then its length as four little-endian bytes, and ends
inverted. An empty name hashes to 0.
"""

POLYNOMIAL = 0x42F0E1EBA9EA3693
_MASK = (1 << 64) - 1


def _table():
    table = []
    for index in range(256):
        value = index
        for _ in range(8):
            value = (POLYNOMIAL ^ (value >> 1)) if value & 1 else (value >> 1)
        table.append(value)
    return table


_TABLE = _table()


def crc64(data, include_length, seed=0):
    """The store's CRC-64 of bytes; the length (32 bits, little-endian) is fed after them when asked."""
    if not data:
        return seed
    crc = ~seed & _MASK
    tail = (len(data) & 0xFFFFFFFF).to_bytes(4, "little") if include_length else b""
    for byte in bytes(data) + tail:
        crc = _TABLE[(byte ^ crc) & 0xFF] ^ (crc >> 8)
    return ~crc & _MASK


def name_hash(name):
    """The hash under which the store knows a module or member name."""
    return crc64(name.encode("utf-8"), True)


def literal(name):
    """C++ literal of a name's hash."""
    return f"0x{name_hash(name):016X}ULL"
