#!/usr/bin/env python3
"""Lets other programs read the video files that a test program writes: ffprobe says what they are, ffmpeg decodes them,
and the first and the last picture are compared with bitmaps that show the same.

    read_back.py FOLDER CODE=CODEC:LOSS[:gray],... PROGRAM...

Of the files CODE.avi in the folder those that are listed have to be there, with that codec. LOSS is the largest mean
difference of a byte; 0 means that every byte is equal.
"""
import json
import os
import pathlib
import shutil
import struct
import subprocess
import sys

FRAMES = 36


def output(*command):
    return subprocess.run([str(word) for word in command], check=True, stdout=subprocess.PIPE).stdout


def bitmap(path):
    """Width, height and the bytes (blue, green, red) from the top row."""
    data = path.read_bytes()
    offset, width, height = (*struct.unpack_from("<I", data, 10), *struct.unpack_from("<ii", data, 18))
    rows = [data[offset + row * width * 3:offset + (row + 1) * width * 3] for row in range(height)]
    return width, height, b"".join(reversed(rows))


def gray(bgr):
    return bytes(round(0.114 * b + 0.587 * g + 0.299 * r) for b, g, r in zip(bgr[::3], bgr[1::3], bgr[2::3])
                 for _ in range(3))


def check(video, codec, loss, to_gray):
    probe = json.loads(output("ffprobe", "-v", "error", "-count_packets", "-show_streams", "-show_packets", "-of",
                              "json", video))
    stream, = probe["streams"]
    width, height, first = bitmap(video.parent / "first.bmp")
    last = bitmap(video.parent / "last.bmp")[2]
    expected = (codec, width, height, "25/1", "25/1", str(FRAMES), str(FRAMES))
    found = tuple(stream[key] for key in ("codec_name", "width", "height", "r_frame_rate", "avg_frame_rate",
                                          "nb_frames", "nb_read_packets"))
    assert found == expected, f"{video.name}: {found} instead of {expected}"
    assert video.stem == "DIB" or stream["codec_tag_string"] == video.stem, stream["codec_tag_string"]
    assert all("K" in packet["flags"] for packet in probe["packets"]), f"{video.name}: not all are key frames"

    pixels = output("ffmpeg", "-v", "error", "-i", video, "-f", "rawvideo", "-pix_fmt", "bgr24", "-")
    size = width * height * 3
    assert len(pixels) == FRAMES * size, f"{video.name}: {len(pixels) / size} pictures"
    if to_gray:
        first, last = gray(first), gray(last)
    for name, wanted, decoded in ("first", first, pixels[:size]), ("last", last, pixels[-size:]):
        mean = sum(abs(a - b) for a, b in zip(wanted, decoded)) / size
        turned = sum(abs(a - b) for a, b in zip(wanted, decoded[::-1])) / size
        print(f"{video.name}: {name} picture differs by {mean:.3f} on average")
        assert mean <= loss, f"{video.name}: the {name} picture differs by {mean:.3f}"
        assert turned > 5 * loss + 1, "the comparison could not fail"


def main():
    folder, wanted, *program = sys.argv[1:]
    folder = pathlib.Path(folder)
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    subprocess.run(program, check=True, env=dict(os.environ, QUORVEX_RECORDINGS=str(folder)))
    for entry in wanted.split(","):
        code, _, rest = entry.partition("=")
        codec, loss, *form = rest.split(":")
        check(folder / f"{code}.avi", codec, float(loss), form == ["gray"])
    shutil.rmtree(folder)


if __name__ == "__main__":
    main()
