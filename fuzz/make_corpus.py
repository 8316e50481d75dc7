#!/usr/bin/env python3
"""Writes the seed corpora: small files that reach every branch of the readers."""
import struct
from pathlib import Path

HERE = Path(__file__).resolve().parent


def chunk(tag, body):
    return tag + struct.pack("<I", len(body)) + body + b"\0" * (len(body) % 2)


def plain_format(tag=1, channels=1, rate=48000, bits=16):
    align = channels * bits // 8
    return struct.pack("<HHIIHH", tag, channels, rate, rate * align, align, bits)


def extensible_format(channels=2, sub=1):
    guid = struct.pack("<H", sub) + bytes.fromhex("000000001000800000aa00389b71")
    return plain_format(0xFFFE, channels) + struct.pack("<HHI", 22, 16, 3) + guid


def wave(*chunks):
    body = b"WAVE" + b"".join(chunks)
    return b"RIFF" + struct.pack("<I", len(body)) + body


SAMPLES = struct.pack("<8h", 0, 1, -1, 32767, -32768, 256, -256, 12345)
GOOD = wave(chunk(b"fmt ", plain_format()), chunk(b"data", SAMPLES))
WAV = {
    "mono": GOOD,
    "stereo": wave(chunk(b"fmt ", plain_format(channels=2)), chunk(b"data", SAMPLES)),
    "extensible": wave(chunk(b"fmt ", extensible_format()), chunk(b"data", SAMPLES)),
    "extensible-float": wave(chunk(b"fmt ", extensible_format(sub=3)), chunk(b"data", SAMPLES)),
    "chunks-before-data": wave(chunk(b"LIST", b"INFOISFT\x05\0\0\0quorl"), chunk(b"fmt ", plain_format() + b"\0\0"),
                               chunk(b"fact", b"\x08\0\0\0"), chunk(b"odd ", b"x"), chunk(b"data", SAMPLES)),
    "trailer": GOOD + b"QUORL" + b"F\0=\0",
    "no-samples": wave(chunk(b"fmt ", plain_format()), chunk(b"data", b"")),
    "rate-44100": wave(chunk(b"fmt ", plain_format(rate=44100)), chunk(b"data", SAMPLES)),
    "eight-bits": wave(chunk(b"fmt ", plain_format(bits=8)), chunk(b"data", SAMPLES)),
    "six-channels": wave(chunk(b"fmt ", plain_format(channels=6)), chunk(b"data", SAMPLES)),
    "odd-count": wave(chunk(b"fmt ", plain_format()), b"data" + struct.pack("<I", 15) + SAMPLES),
    "data-beyond-end": wave(chunk(b"fmt ", plain_format()), b"data" + struct.pack("<I", 1 << 30) + SAMPLES),
    "data-before-format": wave(chunk(b"data", SAMPLES), chunk(b"fmt ", plain_format())),
    "truncated": GOOD[:30],
    "no-wave": b"RIFX" + GOOD[4:],
}


def main():
    folder = HERE / "corpus" / "wav"
    folder.mkdir(parents=True, exist_ok=True)
    for name, content in WAV.items():
        (folder / (name + ".wav")).write_bytes(content)


if __name__ == "__main__":
    main()
