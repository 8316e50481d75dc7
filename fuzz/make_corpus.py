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


SETTINGS = {
    "plain": "# mine\n\n[frmMain]\nFilterHi = 5000\n[DDSAD9951]\nCLKIn=360096000\n",
    "broken": "x=1\n[a]\nstray\nbad=\\q\n[b\nlost=1\n[a]\n; note\nn=\\x41\\n\\\\\n",
    "foreign": "\ufeff[VFO]\r\n TunedFrequency = 1 \r\nWaitTime=0.5\r\n\r\n[]\r\n=\r\n",
}
STATIONS = {
    "band": "[band]\nseed = 7\nnoise_dbm_hz = -152\nspark_dbm = -45\n",
    "voice": "[station A]\nfrequency_khz = 7205\nmode = am\nprogramme = melody 20, speech x, pause 1, tone 440 2\n",
    "morse": "; text\n[station B]\nfrequency_khz = 7020.5\nmode = cw\ntext = CQ DE QX2LAB\nwpm = 22\nfading_db = 9\n",
    "fault": "[station ]\nlevel_dbm = loud\n",
}
SCRIPTS = {
    "gestures": "click chkNB\nwheel sldNB 3 shift\nset sldNB 4\nkey up ctrl\nhover lbl7Seg(0) 0 0\nprint optMode(1)\n",
    "waits": "# wait\nwait 5000000\nwaitfor chkNB True 100\nexpect chkNB False\ndump\nquit\n",
    "rest": "answer yes\nshot a.png 2\nrightclick sldNB\ndoubleclick sldNB\nchoose optMode(2) True\nnonsense\n",
}
OPTIONS = {
    "plain": "--mode\nusb\n--filter\n300:2700\n--bfo\n-50\n--volume\n40\nin.wav\nout.wav",
    "filters": "--model\niq\n--if-filter\nman:100:2000\n--notch\nif:-500:200\n--agc\nslow\n--nb\n30\n-\n-",
    "refused": "--channels\n3\n--filter\n5:4\n--help",
}
CORPORA = {"wav": (WAV, ".wav"), "settings": (SETTINGS, ".ini"), "stations": (STATIONS, ".ini"),
           "scripts": (SCRIPTS, ".txt"), "options": (OPTIONS, ".txt")}


def main():
    for reader, (files, ending) in CORPORA.items():
        folder = HERE / "corpus" / reader
        folder.mkdir(parents=True, exist_ok=True)
        for name, content in files.items():
            (folder / (name + ending)).write_bytes(content if isinstance(content, bytes) else content.encode())


if __name__ == "__main__":
    main()
