"""A reader of the program's files, written from the page of file formats and nothing else."""
import datetime
import re
import struct
import zlib


def u16(data, at):
    return struct.unpack_from("<H", data, at)[0]


def u32(data, at):
    return struct.unpack_from("<I", data, at)[0]


def date_of_days(days):
    return datetime.datetime(1899, 12, 30) + datetime.timedelta(days=days)


# ---- Recordings

def recording(data):
    assert data[0:4] == b"RIFF" and data[8:16] == b"WAVEfmt " and u32(data, 16) == 16 and u16(data, 20) == 1
    told = {"channels": u16(data, 22), "rate": u32(data, 24), "bits": u16(data, 34)}
    samples_at = 44
    if data[36:40] == b"LIST":
        assert u32(data, 40) == 28 and data[44:52] == b"qIF mod " and u32(data, 52) == 4
        assert data[60:64] == b"side" and u32(data, 64) == 4
        told |= {"board": u32(data, 56), "low side": u32(data, 68) == 1}
        samples_at = 80
    assert data[samples_at - 8:samples_at - 4] == b"data"
    size = u32(data, samples_at - 4) * (2 if told["bits"] == 8 else 1)
    assert u32(data, 4) == samples_at + size - 8 or (told["bits"] == 8 and u32(data, 4) == 36 + size)
    told["samples"] = struct.unpack_from(f"<{size // 2}h", data, samples_at)
    told["log"] = log(data[samples_at + size:], samples_at, 2 * told["channels"])
    return told


def log(trailer, samples_at, frame_bytes):
    if not trailer.startswith(b"QUORL"):
        return None
    records = []
    for text in trailer[5::2].decode("ascii").split("\0")[:-1]:
        fields = dict(field.split("=", 1) for field in text.split("\4") if field)
        records.append({"hertz": int(fields["F"]) / 10,
                        "when": datetime.datetime.fromisoformat(fields["T"]),
                        "frame": (int(fields["S"]) - samples_at) // frame_bytes,
                        "end": (int(fields["E"]) - samples_at) // frame_bytes})
    return records


# ---- The journal

def sealed(data, at, length):
    piece = data[at:at + length]
    return len(piece) == length and zlib.crc32(piece[:-4]) == u32(piece, length - 4)


def journal(data):
    assert data[0:8] == b"QUORLJNL" and u32(data, 8) == 1 and sealed(data, 0, 64)
    names = ("rate", "channels", "bits", "is IF", "board", "low side", "half", "first file")
    told = dict(zip(names, struct.unpack_from("<8I", data, 12)))
    slot_bytes = 48 + 2 * told["half"]
    told["slots"] = {}
    for slot in range(64, 64 + 6 * slot_bytes, slot_bytes):
        heads = [struct.unpack_from("<QII", data, at) for at in (slot, slot + 24) if sealed(data, at, 24)]
        if not heads:
            continue
        half, count, checksum = max(heads)
        samples = data[slot + 48:slot + 48 + 2 * count]
        if zlib.crc32(samples) == checksum:
            told["slots"][half] = struct.unpack(f"<{count}h", samples)
    told["events"] = []
    for at in range(64 + 6 * slot_bytes, len(data), 28):
        if not sealed(data, at, 28):
            break
        kind, number, place = struct.unpack_from("<IiQ", data, at)
        form = "<d" if kind == 1 else "<Q"
        told["events"].append((kind, number, place, struct.unpack_from(form, data, at + 16)[0]))
    return told


# ---- Text files

def text_of(data):
    try:
        return data.decode("utf-8")
    except UnicodeDecodeError:
        return data.decode("cp1252")


def sections(data, comments, first_counts=True):
    """{section: {key: value}}, both in small letters."""
    found, inside = {}, None
    for line in text_of(data).splitlines():
        line = line.strip(" \t")
        if not line or line.startswith(comments):
            continue
        if line.startswith("["):
            inside = found.setdefault(line.strip("[]").lower(), {})
        elif "=" in line and inside is not None:
            key, value = (part.strip(" \t") for part in line.split("=", 1))
            if not (first_counts and key.lower() in inside):
                inside[key.lower()] = value
    return found


MODES = ("AM", "USB", "LSB", "DRM", "FM", "BC")


def plan(data):
    """The presets that are stored, as (sub-band's caption, Hz, mode, description)."""
    found = sections(data, comments=("\0",))
    presets = []
    for n in range(int(found["mainband"]["numsubbands"]) + 1):
        band = found.get(f"subband.{n}", {})
        if max((int(band.get(key, -1)) for key in ("freqmin", "freqmax", "freqcurrent")), default=-1) < 0:
            continue
        for p in range(12):
            preset = found.get(f"preset.{n}.{p}", {})
            if int(preset.get("freqcurrent", 0)) > 0:
                presets.append((band["caption"][:6], int(preset["freqcurrent"]), MODES[int(preset["demodmode"])],
                                preset["description"]))
    return presets


def preset(data, n, p):
    """How a preset is heard."""
    keys = sections(data, comments=("\0",))[f"preset.{n}.{p}"]
    return {"mode": MODES[int(keys["demodmode"])], "Hz": int(keys["freqcurrent"]),
            "edges": (int(keys["filterlo"]), int(keys["filterhi"])),
            "decay s": float(keys["agcattack"]) / 10, "attack ms": float(keys["agcdecay"]) / 10}


def theme(data):
    """{key: (red, green, blue)}, keys in small letters."""
    found = sections(data, comments=(";",))
    colours = found[found["active"]["name"].lower()]
    return {key: (int(value) & 255, int(value) >> 8 & 255, int(value) >> 16) for key, value in colours.items()}


def settings(data):
    signs = {"\\": "\\", "n": "\n", "r": "\r"}

    def plain(value):
        return re.sub(r"\\(x[0-9A-Fa-f]{2}|.)",
                      lambda found: chr(int(found[1][1:], 16)) if len(found[1]) == 3 else signs[found[1]], value)

    found = sections(data, comments=("#", ";"), first_counts=False)
    return {section: {key: plain(value) for key, value in keys.items()} for section, keys in found.items()}


def programme(value):
    names = ("counts", "begin", "end", "repeat", "rate", "dHz", "mode", "filter", "sub-band", "preset", "plan")
    return dict(zip(names, value.split(";", 10)))


def stations(data):
    found = sections(data, comments=("#", ";"), first_counts=False)
    return found["band"], {name[8:]: keys for name, keys in found.items() if name.startswith("station ")}
