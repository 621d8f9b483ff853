#!/usr/bin/env python3
"""Draws the same pictures with the native tool and with the one for Windows, and compares the files byte for byte, and
the pictures of a video that both record. The latter's file has a name that is in no code page of old.

    same_pictures.py NATIVE-TOOL EMULATOR WINDOWS-TOOL FOLDER FILE...
"""
import pathlib
import subprocess
import sys

VARIANTS = [[], ["--view", "back", "--projection", "perspective", "--fov", "40"], ["--antialias", "2", "--view", "top"]]
VARIANTS += [["--mesh-mode", mode] for mode in
             ("wireframe", "surface-wireframe", "hidden-line", "xray", "points")]
VARIANTS += [["--stereo", mode] for mode in "124"]
VOLUME_VARIANTS = [[], ["--volume-mode", "max", "--view", "front", "--projection", "orthogonal"],
                   ["--volume-mode", "unshaded", "--clip", "-1,0,0,0", "--slice", "1,0,0,0", "--bounding-box"]]


def draw(command, file, options, picture):
    subprocess.run([*command, "render", file, "-o", str(picture), "--size", "404x300", *options], check=True)
    return picture.read_bytes()


def record(command, file, video):
    subprocess.run([*command, "turntable", file, "-o", str(video), "--size", "200x152", "--frames", "9", "--codec", "DIB"],
                   check=True)
    return subprocess.run(["ffmpeg", "-v", "error", "-i", str(video), "-f", "rawvideo", "-pix_fmt", "bgr24", "-"],
                          check=True, stdout=subprocess.PIPE).stdout


def difference(a, b):
    if len(a) != len(b):
        return f"{len(a)} and {len(b)} bytes"
    steps = [abs(x - y) for x, y in zip(a, b) if x != y]
    return f"{len(steps)} bytes differ, by {max(steps)} at most" if steps else ""


def main():
    native, emulator, windows, folder, *files = sys.argv[1:]
    if not pathlib.Path(native).exists():
        print(f"{native} is missing: build the native tool first, or say with QUORVEX_NATIVE_TOOL where it is")
        return 1
    failed = 0
    for file in files:
        for options in VOLUME_VARIANTS if file.endswith(".rek") else VARIANTS:
            one = draw([native], file, options, pathlib.Path(folder, "native.bmp"))
            other = draw([emulator, windows], file, options, pathlib.Path(folder, "windows \u00b5\u03a9.bmp"))
            result = difference(one, other)
            drawn = len(set(one[i:i + 3] for i in range(54, len(one), 3))) > 20
            print(pathlib.Path(file).name, *options, "->", result or ("equal" if drawn else "EMPTY"))
            failed += bool(result) or not drawn
    one = record([native], files[0], pathlib.Path(folder, "native.avi"))
    other = record([emulator, windows], files[0], pathlib.Path(folder, "windows \u00b5\u03a9.avi"))
    result = difference(one, other) or ("" if len(one) == 9 * 200 * 152 * 3 else f"{len(one)} bytes")
    print("turntable", "->", result or "equal")
    failed += bool(result)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
