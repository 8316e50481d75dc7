#!/usr/bin/env python3
"""Writes the seed corpora: small files that reach every branch of the readers."""
import struct
import zlib
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


def recording_header(frames, rate=48000, bits=16, origin=None):
    at = 80 if origin else 44
    channels = origin[2] if origin else 1
    align = channels * bits // 8
    extra = b"" if not origin else chunk(
        b"LIST", b"qIF " + chunk(b"mod ", struct.pack("<I", origin[0])) + chunk(b"side", struct.pack("<I", origin[1])))
    return (b"RIFF" + struct.pack("<I", at + 2 * channels * frames - 8) + b"WAVE"
            + chunk(b"fmt ", struct.pack("<HHIIHH", 1, channels, rate, rate * align, align, bits))
            + extra + b"data" + struct.pack("<I", frames * align))


def trailer(*records):
    text = "".join(f"F={freq:010}\x04T={when}\x04S={start:010}\x04E={end:010}\x04\0" for freq, when, start, end in records)
    return b"QUORL" + b"".join(bytes([c, 0]) for c in text.encode())


NIGHT = [(72050000, "2026-11-23 18:05:09", 44, 52), (60700000, "2026-11-23 18:06:00", 52, 61)]
RECORDINGS = {
    "two-tracks": recording_header(8) + SAMPLES + trailer(*NIGHT),
    "eight-bits": recording_header(8, 12000, 8) + SAMPLES + trailer(*NIGHT),
    "if": recording_header(8, origin=(3, 1, 1)) + SAMPLES + trailer((72050000, "2026-11-23 18:05:09", 80, 97)),
    "if-stereo": recording_header(4, origin=(2, 0, 2)) + SAMPLES + trailer(),
    "no-trailer": recording_header(8, 3000) + SAMPLES,
    "cut": (recording_header(8) + SAMPLES + trailer(*NIGHT))[:-9],
    "too-short": recording_header(9) + SAMPLES,
    "strange-fields": recording_header(8) + SAMPLES + trailer((-5, "2026-02-30 25:00:00", 10**12, -1)) + b"Z\0=\0\4\0\0\0",
}


def sealed(body):
    return body + struct.pack("<I", zlib.crc32(body))


def journal_head(half, rate=48000, bits=16, origin=None, part=1):
    model, side, channels = origin or (0, 0, 1)
    return sealed((b"QUORLJNL" + struct.pack("<9i", 1, rate, channels, bits, 1 if origin else 0, model, side, half,
                                             part)).ljust(60, b"\0"))


def slot(half_samples, half=None, samples=b""):
    head = sealed(struct.pack("<qiI", half, len(samples) // 2, zlib.crc32(samples)).ljust(20, b"\0")) if samples else bytes(24)
    return head + bytes(24) + samples.ljust(2 * half_samples, b"\0")


def event(kind, number=0, place=0, value=0):
    return sealed(struct.pack("<Iiq", kind, number, place) + (struct.pack("<d", value) if kind == 1 else
                                                             struct.pack("<q", value)))


def journal(half, slots, *events, **head):
    held = [slot(half, *slots[i]) if i < len(slots) else slot(half) for i in range(6)]
    return journal_head(half, **head) + b"".join(held) + b"".join(events)


def crash(temporary, journal_bytes, flags=1, kill=2):
    return struct.pack("<BBH", flags, kill, len(temporary)) + temporary + journal_bytes


LOG, WRITTEN, LOST, PART = 1, 2, 3, 4
GROWING = recording_header(0) + SAMPLES
TUNED = event(LOG, 72050000, 44, 46349.75)
JOURNAL = {
    "tail": crash(GROWING, journal(8, [(1, SAMPLES[:6])], TUNED, event(WRITTEN, 0, 0, 16))),
    "unsealed": crash(GROWING, journal(8, [(1, SAMPLES[:6])], TUNED, event(WRITTEN, 0, 0, 16)), 0),
    "eight-bits": crash(recording_header(0, bits=8) + SAMPLES, journal(8, [(1, SAMPLES)], TUNED, bits=8), kill=5),
    "if": crash(recording_header(0, origin=(3, 1, 2)) + SAMPLES, journal(8, [(1, SAMPLES)], TUNED, origin=(3, 1, 2))),
    "lost": crash(GROWING + b"junk", journal(8, [(0, SAMPLES), (1, SAMPLES), (2, SAMPLES[:4])], TUNED,
                                              event(LOG, 60700000, 64, 46349.8), event(LOST, 0, 1, 16))),
    "parts": crash(GROWING, journal(8, [(1, SAMPLES), (2, SAMPLES)], TUNED, event(PART, 2, 1), TUNED), kill=8),
    "part-finished": crash(GROWING, journal(8, [(1, SAMPLES), (2, SAMPLES)], TUNED, event(PART, 2, 1), TUNED), 3),
    "closed": crash(recording_header(8) + SAMPLES + trailer(*NIGHT)[:40], journal(8, [(0, SAMPLES)], TUNED), kill=4),
    "goes-on": crash(recording_header(0) + 5 * SAMPLES + b"x", journal(8, [(0, SAMPLES)], TUNED), kill=6),
    "goes-on-a-little": crash(recording_header(0) + 2 * SAMPLES + b"x", journal(8, [(0, SAMPLES)], TUNED), kill=5),
    "power-cut": crash(recording_header(0), journal(8, [(9, SAMPLES), (10, SAMPLES[:2])], TUNED)),
    "torn": crash(GROWING, journal(8, [(1, SAMPLES)], TUNED, event(WRITTEN, 0, 0, 16)[:11]), 0),
    "no-journal": crash(GROWING, b"QUORL"),
    "no-file": crash(b"", journal(8, [(0, SAMPLES)], TUNED)),
}


SETTINGS = {
    "plain": "# mine\n\n[frmMain]\nFilterHi = 5000\n[DDSAD9951]\nCLKIn=360096000\n",
    "broken": "x=1\n[a]\nstray\nbad=\\q\n[b\nlost=1\n[a]\n; note\nn=\\x41\\n\\\\\n",
    "foreign": "\ufeff[VFO]\r\n TunedFrequency = 1 \r\nWaitTime=0.5\r\n\r\n[]\r\n=\r\n",
}
THEME = "[Active]\r\nName=SDRColours\r\n[SDRColours]\r\nshpSDRBackGroundColour=0\r\nshpSDRLabelColour=11379599\r\n"
THEMES = {
    "some-keys": THEME + "SHPSCOPEY1COLOUR = 65280 \r\n",
    "unfit": THEME + "shpSDRTuningColour=red\r\nshpScopeBackColour=16777216\r\nshpScopeXTextColour=-1\r\n",
    "other-section": "[active]\nname = a b\n[A B]\nshpScopeYTextColour=1e3\n[A b]\nshpScopeYTextColour=5\n",
    "no-name": "[SDRColours]\r\nshpSDRLabelColour=1\r\n[Active]\r\nName=\r\n",
    "windows-1252": b"[Active]\r\nName=Gr\xfcn\r\n[gr\xfcn]\r\nshpSDRLabelColour=255\r\n",
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
REMOTE = {  # the first byte is the size of the pieces
    "opening": "\x07\\chk_vfo\n\\dump_state\nv\nf\ns\nm\n\\get_powerstat\nq\n",
    "tuning": "\x00F 7050000.000000\r\nM USB 2400\r\n\\get_lock_mode\nL AF 0.5\nl AF\nl STRENGTH\nV Main\nt\n_\n",
    "signs": "\x3f+f\n;m\n|v\n,s\n/_\n!t\n$l AF\n+\\get_vfo_info VFOA\n+\\set_freq -1\n+\\set_powerstat 0\n",
    "lines": "\x02fmv F7050000+m\n# remark\n\n\\foo bar\nM PKTLSB -1 M CW 0\nF nan\n",
    "long": b"\x10" + b"f" * 1023 + b"\n" + b"F " + b"\0" * 1100 + b"\nf\n",
    "full": b"\x3f" + b"\\dump_state\n" * 200,
}
CORPORA = {"wav": (WAV, ".wav"), "recordings": (RECORDINGS, ".wav"), "journal": (JOURNAL, ".bin"), "settings": (SETTINGS, ".ini"), "themes": (THEMES, ".thm"), "stations": (STATIONS, ".ini"),
           "remote": (REMOTE, ".txt"), "scripts": (SCRIPTS, ".txt"), "options": (OPTIONS, ".txt")}


def main():
    for reader, (files, ending) in CORPORA.items():
        folder = HERE / "corpus" / reader
        folder.mkdir(parents=True, exist_ok=True)
        for name, content in files.items():
            (folder / (name + ending)).write_bytes(content if isinstance(content, bytes) else content.encode())


if __name__ == "__main__":
    main()
