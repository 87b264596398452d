#!/usr/bin/env python3
"""Encrypted block files and logs, made and read by plain Python: the other implementation of
docs/encrypted-files.md, with an AES and an RSA of its own.

Usage: encrypted_files_reference.py             writes the files of tests/crypto/golden
       encrypted_files_reference.py --check     only compares them
       encrypted_files_reference.py decrypt LOG.slog PRIVATE.pem
                                      writes the text of a log to standard output

Needs nothing but Python. The keys are for tests: they come from a seeded generator, as does all
that would be random.
"""

import base64
import hashlib
import pathlib
import random
import struct
import sys
import zlib

GOLDEN = pathlib.Path(__file__).resolve().parent.parent / "crypto" / "golden"
BLOCK = 512

# AES-128, FIPS 197


def xtime(byte):
    return ((byte << 1) ^ 0x11B) & 0xFF if byte & 0x80 else byte << 1


def make_sbox():
    """The inverse in GF(2^8), found by walking it with a generator and its inverse, then mixed."""
    sbox = [0x63] * 256
    value, inverse = 1, 1
    while True:
        value ^= xtime(value)  # times 3
        for shift in (1, 2, 4):  # divided by 3
            inverse ^= inverse << shift & 0xFF
        if inverse & 0x80:
            inverse ^= 0x09
        mixed = inverse
        for turn in range(1, 5):
            mixed ^= (inverse << turn | inverse >> (8 - turn)) & 0xFF
        sbox[value] = mixed ^ 0x63
        if value == 1:
            return sbox


SBOX = make_sbox()


def round_keys(key):
    words = [list(key[i:i + 4]) for i in range(0, 16, 4)]
    constant = 1
    for i in range(4, 44):
        word = list(words[-1])
        if i % 4 == 0:
            word = [SBOX[byte] for byte in word[1:] + word[:1]]
            word[0] ^= constant
            constant = xtime(constant)
        words.append([a ^ b for a, b in zip(words[i - 4], word)])
    return [sum(words[i:i + 4], []) for i in range(0, 44, 4)]


def mix_column(c):
    total = c[0] ^ c[1] ^ c[2] ^ c[3]
    return [c[i] ^ total ^ xtime(c[i] ^ c[(i + 1) % 4]) for i in range(4)]


def aes_encrypt(keys, block):
    state = [a ^ b for a, b in zip(block, keys[0])]
    for number in range(1, 11):
        state = [SBOX[state[(i + 4 * (i % 4)) % 16]] for i in range(16)]
        if number != 10:
            state = sum((mix_column(state[i:i + 4]) for i in range(0, 16, 4)), [])
        state = [a ^ b for a, b in zip(state, keys[number])]
    return bytes(state)


assert aes_encrypt(round_keys(bytes(range(16))),
                   bytes.fromhex("00112233445566778899aabbccddeeff")
                   ) == bytes.fromhex("69c4e0d86a7b0430d8cdb78070b4c55a")

# The block file


def block_file(key, iv, data):
    """Encrypts or decrypts; `data` begins at the start of block 0."""
    keys = round_keys(key)
    result = bytearray()
    for start in range(0, len(data), BLOCK):
        counter = (start // BLOCK << 9 & 0xFFFFFFFF) >> 4
        for i in range(start, min(start + BLOCK, len(data)), 16):
            stream = aes_encrypt(keys, iv[:12] + struct.pack(">I", counter))
            result += bytes(a ^ b for a, b in zip(data[i:min(i + 16, start + BLOCK)], stream))
            counter += 1
    return bytes(result)


# RSA with OAEP, RFC 8017


def is_prime(n, rng):
    if any(n % p == 0 for p in (3, 5, 7, 11, 13, 17, 19, 23)):
        return False
    odd, twos = n - 1, 0
    while odd % 2 == 0:
        odd, twos = odd // 2, twos + 1
    for _ in range(40):
        x = pow(rng.randrange(2, n - 1), odd, n)
        if x in (1, n - 1):
            continue
        for _ in range(twos - 1):
            x = x * x % n
            if x == n - 1:
                break
        else:
            return False
    return True


def make_prime(bits, rng):
    while True:
        candidate = rng.getrandbits(bits) | 3 << (bits - 2) | 1
        if candidate % 65537 != 1 and is_prime(candidate, rng):
            return candidate


def make_key(bits, rng):
    p, q = make_prime(bits // 2, rng), make_prime(bits // 2, rng)
    d = pow(65537, -1, (p - 1) * (q - 1))
    return {"n": p * q, "e": 65537, "d": d, "p": p, "q": q,
            "dp": d % (p - 1), "dq": d % (q - 1), "qinv": pow(q, -1, p)}


def mask(seed, size):
    blocks = (hashlib.sha1(seed + struct.pack(">I", i)).digest() for i in range(size // 20 + 1))
    return b"".join(blocks)[:size]


def xored(a, b):
    return bytes(x ^ y for x, y in zip(a, b))


def oaep_encrypt(key, message, rng):
    size = (key["n"].bit_length() + 7) // 8
    block = hashlib.sha1(b"").digest() + bytes(size - 42 - len(message)) + b"\x01" + message
    seed = rng.randbytes(20)
    block = xored(block, mask(seed, len(block)))
    seed = xored(seed, mask(block, 20))
    return pow(int.from_bytes(seed + block, "big"), key["e"], key["n"]).to_bytes(size, "big")


def oaep_decrypt(key, ciphertext):
    size = (key["n"].bit_length() + 7) // 8
    whole = pow(int.from_bytes(ciphertext, "big"), key["d"], key["n"]).to_bytes(size, "big")
    seed, block = whole[1:21], whole[21:]
    seed = xored(seed, mask(block, 20))
    block = xored(block, mask(seed, len(block)))
    digest, rest = block[:20], block[20:].lstrip(b"\x00")
    if whole[0] != 0 or digest != hashlib.sha1(b"").digest() or rest[:1] != b"\x01":
        raise ValueError("not for this key")
    return rest[1:]


# Keys in PEM files: DER by hand


def der(tag, content):
    size = len(content)
    length = bytes([size]) if size < 128 else (
        bytes([0x80 + (size.bit_length() + 7) // 8]) +
        size.to_bytes((size.bit_length() + 7) // 8, "big"))
    return bytes([tag]) + length + content


def der_integer(value):
    return der(0x02, value.to_bytes(value.bit_length() // 8 + 1, "big"))


def pem(name, content):
    text = base64.b64encode(content).decode()
    lines = [text[i:i + 64] for i in range(0, len(text), 64)]
    return "\n".join([f"-----BEGIN {name}-----", *lines, f"-----END {name}-----", ""]).encode()


def private_pem(key):
    numbers = [0] + [key[name] for name in ("n", "e", "d", "p", "q", "dp", "dq", "qinv")]
    return pem("RSA PRIVATE KEY", der(0x30, b"".join(map(der_integer, numbers))))


def public_pem(key):
    algorithm = der(0x30, bytes.fromhex("06092a864886f70d0101010500"))
    numbers = der(0x30, der_integer(key["n"]) + der_integer(key["e"]))
    return pem("PUBLIC KEY", der(0x30, algorithm + der(0x03, b"\x00" + numbers)))


def read_private_pem(text):
    content = base64.b64decode(b"".join(line for line in text.splitlines() if b"-" not in line))
    numbers = []
    position = 4  # behind the head of a sequence longer than 255 bytes
    while position < len(content):
        size = content[position + 1]
        position += 2
        if size >= 128:
            width = size - 128
            size = int.from_bytes(content[position:position + width], "big")
            position += width
        numbers.append(int.from_bytes(content[position:position + size], "big"))
        position += size
    return dict(zip(("n", "e", "d", "p", "q", "dp", "dq", "qinv"), numbers[1:]))


# The log


def slog(key, aes_key, iv, stream, rng):
    head = oaep_encrypt(key, aes_key + iv, rng)
    return struct.pack("<H", len(head)) + head + block_file(aes_key, iv, stream)


def open_slog(content, key):
    """Gives the encrypted body in the clear: a zlib stream, whole or not."""
    size = struct.unpack("<H", content[:2])[0]
    secret = oaep_decrypt(key, content[2:2 + size])
    return block_file(secret[:16], secret[16:32], content[2 + size:])


def inflated(stream):
    """All that comes out, and whether that was all: byte by byte, so that damage costs nothing that
    stands ahead of it."""
    inflater = zlib.decompressobj()
    text = bytearray()
    try:
        for byte in stream:
            text += inflater.decompress(bytes([byte]))
    except zlib.error:
        return bytes(text), False
    return bytes(text), True


def damage(key, content):
    """Lines of: what was done, at which byte, the status, the text's length and its CRC-32."""
    body = 2 + struct.unpack("<H", content[:2])[0]
    secret = oaep_decrypt(key, content[2:body])
    for kind in ("cut", "flip"):
        for place in range(body, len(content)):
            damaged = bytearray(content[:place] if kind == "cut" else content)
            if kind == "flip":
                damaged[place] ^= 1 << place % 8
            text, whole = inflated(block_file(secret[:16], secret[16:], bytes(damaged[body:])))
            yield f"{kind} {place} {0 if whole else 1} {len(text)} {zlib.crc32(text):08x}\n"


# The files


def plain(size):
    return bytes((i * 7 + i // 256 + 3) & 0xFF for i in range(size))


def log_lines():
    return [f"12:00:{i:02d} 1 core          cell {i * 7919 % 65536} of 262-{i % 4 + 1}\n".encode()
            for i in range(30)]


def log_streams():
    """The zlib stream of a log that was flushed twice, and what the first flush had brought."""
    deflater = zlib.compressobj()
    stream, flushed = b"", b""
    for i, line in enumerate(log_lines()):
        stream += deflater.compress(line)
        if i in (9, 19):
            stream += deflater.flush(zlib.Z_SYNC_FLUSH)
            flushed = flushed or stream
    return stream + deflater.flush(), flushed


def golden():
    """Gives {file name: content}."""
    rng = random.Random(7)
    key, other = make_key(2048, rng), make_key(2048, rng)
    aes_key, iv = bytes(range(16)), bytes(range(0xF0, 0x100))
    stream, flushed = log_streams()
    complete = slog(key, aes_key, iv, stream, rng)
    incompressible = random.Random(8).randbytes(3000).hex().encode()
    return {
        "private.pem": private_pem(key),
        "public.pem": public_pem(key),
        "other_private.pem": private_pem(other),
        "block_file_1000.bin": block_file(aes_key, iv, plain(1000)),
        "block_file_5000_at_130.bin": b"#" * 130 + block_file(aes_key, iv, plain(5000)),
        "complete.slog": complete,
        "complete.txt": b"".join(log_lines()),
        "damage.txt": "".join(damage(key, complete)).encode(),
        "empty.txt": b"",
        "empty.slog": slog(key, aes_key, iv, zlib.compress(b""), rng),
        "killed.slog": slog(key, aes_key, iv, flushed, rng),
        "killed.txt": b"".join(log_lines()[:10]),
        "long.slog": slog(key, aes_key, iv, zlib.compress(incompressible), rng),
        "long.txt": incompressible,
        "short_key.slog": struct.pack("<H", 256) + oaep_encrypt(key, aes_key + iv[:15], rng),
    }


def main(arguments):
    if arguments[:1] == ["decrypt"]:
        key = read_private_pem(pathlib.Path(arguments[2]).read_bytes())
        text, whole = inflated(open_slog(pathlib.Path(arguments[1]).read_bytes(), key))
        sys.stdout.buffer.write(text)
        return 0 if whole else 1
    files = golden()
    if arguments == ["--check"]:
        there = {path.name for path in GOLDEN.iterdir()}
        wrong = sorted((there ^ set(files)) | {name for name in there & set(files)
                                               if (GOLDEN / name).read_bytes() != files[name]})
        for name in wrong:
            print(f"{GOLDEN / name} is not what this program makes", file=sys.stderr)
        return 1 if wrong else 0
    GOLDEN.mkdir(exist_ok=True)
    for name, content in files.items():
        (GOLDEN / name).write_bytes(content)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
