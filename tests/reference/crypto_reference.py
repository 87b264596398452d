#!/usr/bin/env python3
"""Reference values for the cryptography tests, from hashlib and integer arithmetic alone.

Writes crypto_reference.inc next to itself; with --check only compares. The RSA blocks are padded
after RFC 8017, sections 7.1.1 and 7.2.1, and raised to the public exponent of
tests/crypto/data/public.pem; the random parts of the paddings come from a fixed hash.
"""

import base64
import hashlib
import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
PUBLIC_KEY = HERE.parent / "crypto" / "data" / "public.pem"

# Store name, seed, device identity.
STORES = [
    ("abc", "1000000000", "device-1"),
    ("abc", "1000000001", "device-1"),
    ("abc", "1000000000", "device-2"),
    ("measurements", "1", "358240051111110"),
    ("exactly16letters", "1700000000", "x"),
    ("twenty characters ok", "1700000000", "x"),
    ("tracks", "\u00e4\u00ff", "\u00e9"),
    ("long seed", "0123456789" * 30, "device-1"),
]

MESSAGE = b"The quick brown fox jumps over the lazy dog"


def seed_file_name(store):
    return hashlib.md5(store.ljust(16).encode()).hexdigest()


def derived(seed, device, length=32):
    seed = seed.encode()
    digest = hashlib.md5(device.encode()).digest()
    steps = [(i, 6 + 3 * i) for i in range(length)]
    return bytes(((seed[k % len(seed)] ^ k) + i * digest[k & 15]) & 0xFF for i, k in steps)


def integers(der):
    """Yields the integers of the RSA key in a SubjectPublicKeyInfo, whose other parts it steps into."""
    at = 0
    while at < len(der):
        tag, length, at = der[at], der[at + 1], at + 2
        if length & 0x80:
            count = length & 0x7F
            length, at = int.from_bytes(der[at:at + count], "big"), at + count
        if tag == 0x02:
            yield int.from_bytes(der[at:at + length], "big")
        if tag == 0x30:
            continue  # its content follows
        at += 1 if tag == 0x03 else length  # a bit string: its content behind the count of bits


def public_key():
    lines = PUBLIC_KEY.read_text(encoding="ascii").splitlines()
    modulus, exponent = integers(base64.b64decode("".join(lines[1:-1])))
    return modulus, exponent


def xor(left, right):
    return bytes(a ^ b for a, b in zip(left, right))


def mgf1(seed, length):
    blocks = (hashlib.sha1(seed + count.to_bytes(4, "big")).digest() for count in range(length))
    mask = b""
    while len(mask) < length:
        mask += next(blocks)
    return mask[:length]


def oaep(message, size):
    block = (hashlib.sha1(b"").digest() + bytes(size - len(message) - 42) + b"\x01" + message)
    seed = hashlib.sha1(b"a fixed seed").digest()
    masked = xor(block, mgf1(seed, len(block)))
    return b"\x00" + xor(seed, mgf1(masked, 20)) + masked


def pkcs1(message, size):
    filling = b"".join(hashlib.sha1(bytes([n])).digest() for n in range(40)).replace(b"\x00", b"\x01")
    return b"\x00\x02" + filling[:size - len(message) - 3] + b"\x00" + message


def unpadded(size):
    """A block of a size of its own, below the modulus."""
    return b"\x00" + b"".join(hashlib.sha1(bytes([n])).digest() for n in range(40))[:size - 1]


def raised(block, modulus, exponent):
    return pow(int.from_bytes(block, "big"), exponent, modulus).to_bytes(len(block), "big")


def literal(text):
    return '"' + "".join(chr(b) if 32 <= b < 127 else f"\\{b:03o}" for b in text.encode()) + '"'


def hexadecimal(data):
    """Rows of C string literals."""
    digits = data.hex()
    return "\n".join(f'    "{digits[at:at + 64]}"' for at in range(0, len(digits), 64))


def constant(name, data):
    return f"constexpr char {name}[] =\n{hexadecimal(data)};\n"


def text():
    modulus, exponent = public_key()
    size = (modulus.bit_length() + 7) // 8
    rows = "".join(
        f"    {{{literal(name)}, {literal(seed)}, {literal(device)},\n"
        f'     "{seed_file_name(name)}",\n     "{derived(seed, device).hex()}"}},\n'
        for name, seed, device in STORES)
    return "\n".join([
        "// Made by crypto_reference.py.\n",
        "struct StoreRow {\n  const char *name, *seed, *device, *seedFile, *keyAndIv;\n};\n",
        f"constexpr StoreRow kStoreRows[] = {{\n{rows}}};\n",
        constant("kRsaMessage", MESSAGE),
        constant("kRsaOaep", raised(oaep(MESSAGE, size), modulus, exponent)),
        constant("kRsaPkcs1", raised(pkcs1(MESSAGE, size), modulus, exponent)),
        constant("kRsaEmptyOaep", raised(oaep(b"", size), modulus, exponent)),
        constant("kRsaEmptyPkcs1", raised(pkcs1(b"", size), modulus, exponent)),
        constant("kRsaPlainBlock", unpadded(size)),
        constant("kRsaBareBlock", raised(unpadded(size), modulus, exponent)),
    ])


def main():
    target = HERE / "crypto_reference.inc"
    if sys.argv[1:] == ["--check"]:
        if target.read_text(encoding="utf-8") != text():
            sys.exit(f"{target} is not what {__file__} writes")
        return
    target.write_text(text(), encoding="utf-8")


if __name__ == "__main__":
    main()
