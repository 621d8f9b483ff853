#!/usr/bin/env python3
"""Uses an installation of the library as its users do.

    package.py SCRATCH install BUILD     installs into SCRATCH and moves the result, so that nothing fixed a path
    package.py SCRATCH cmake             builds the consumer with find_package, runs it and looks at its picture
    package.py SCRATCH pkg-config        the same with plain g++ and what pkg-config answers
    package.py SCRATCH headers           no header beyond the library's and the C++ library's is needed
    package.py SCRATCH symbols           the shared library is versioned and exports only its own namespace
    package.py SCRATCH tool FILE         the installed tool finds its library and reads a file
    package.py SCRATCH windows TOOLCHAIN EMULATOR FILE      the first and the last of these for Windows
"""
import math
import os
import pathlib
import re
import shlex
import shutil
import struct
import subprocess
import sys

CONSUMER = pathlib.Path(__file__).resolve().parent / "consumer"


def output(*command, **options):
    print("+", *command, flush=True)
    return subprocess.run([str(word) for word in command], check=True, text=True, stdout=subprocess.PIPE,
                          **options).stdout


def pkg_config(prefix, *words):
    environment = dict(os.environ, PKG_CONFIG_PATH=str(next(prefix.rglob("pkgconfig"))))
    return shlex.split(output("pkg-config", *words, "quorvex", env=environment))


def library_folder(prefix):
    return next(prefix.rglob("libquorvex.so")).parent


def install(scratch, prefix, build):
    shutil.rmtree(scratch, ignore_errors=True)
    first = scratch / "first"
    output("cmake", "--install", build, "--prefix", first)
    first.rename(prefix)
    for name in prefix.rglob("*.cmake"):
        assert str(scratch) not in name.read_text(), f"{name} holds an absolute path"


def draw(program, **paths):
    """The sphere's silhouette is a disc of known area, brightest in the middle under a light at the eye."""
    picture = pathlib.Path(program[-1]).with_suffix(".bmp")
    picture.unlink(missing_ok=True)
    output(*program, picture, env=dict(os.environ, **paths))
    data = picture.read_bytes()
    offset, width, height, bits = (*struct.unpack_from("<I", data, 10), *struct.unpack_from("<ii", data, 18),
                                   struct.unpack_from("<H", data, 28)[0])
    assert (data[:2], width, abs(height), bits) == (b"BM", 400, 400, 24), "not the bitmap that was asked for"
    pixels = [data[offset + 3 * i:offset + 3 * i + 3] for i in range(400 * 400)]
    covered = sum(pixel != b"\0\0\0" for pixel in pixels)
    assert abs(covered - math.pi * 100 * 100) < 0.02 * math.pi * 100 * 100, f"{covered} pixels are covered"
    middle, beside = sum(pixels[200 * 400 + 200]), sum(pixels[200 * 400 + 290])
    assert middle > beside > 0, f"no shading: {middle} in the middle, {beside} near the edge"


def cmake(scratch, prefix):
    build = scratch / "with-cmake"
    output("cmake", "-S", CONSUMER, "-B", build, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={prefix}")
    output("cmake", "--build", build)
    draw([build / "consumer"], LD_LIBRARY_PATH=str(library_folder(prefix)))


def windows(scratch, prefix, toolchain, emulator, file):
    build = scratch / "for-windows"
    output("cmake", "-S", CONSUMER, "-B", build, "-G", "Ninja", f"-DCMAKE_TOOLCHAIN_FILE={toolchain}",
           f"-DQuorvex_DIR={next(prefix.rglob('QuorvexConfig.cmake')).parent}")
    output("cmake", "--build", build)
    draw([emulator, build / "consumer.exe"], WINEPATH=str(prefix / "bin"))
    tool = prefix / "bin" / "quorvex.exe"
    assert pathlib.Path(file).name in output(emulator, tool, "info", file)

    # The library reports a bad volume by an exception, which has to find its way out of the DLL.
    bad = scratch / "bad.rek"
    bad.write_bytes(bytes(100))
    run = subprocess.run([emulator, tool, "info", bad], capture_output=True, text=True)
    assert run.returncode == 1 and "bad.rek" in run.stderr and run.stderr.count("\n") == 1, run


def with_pkg_config(scratch, prefix):
    program = scratch / "with-pkg-config"
    output("g++", "-std=c++17", "-Wall", "-Wextra", "-Wpedantic", "-Werror", CONSUMER / "main.cpp",
           *pkg_config(prefix, "--cflags", "--libs"), "-o", program)
    draw([program], LD_LIBRARY_PATH=str(library_folder(prefix)))


def headers(scratch, prefix):
    rule = output("g++", "-std=c++17", "-M", CONSUMER / "main.cpp", *pkg_config(prefix, "--cflags"))
    # pkg-config keeps the way back to the prefix in its answer, so compare real places.
    used = {pathlib.Path(word).resolve() for word in shlex.split(rule.replace("\\\n", " "))[1:]}
    own = {path for path in used if path.is_relative_to(prefix.resolve())}
    assert len(own) > 10, "the library's headers were not found in the installation"
    platform = re.compile(r"/(GL|GLES\w*|EGL|KHR|X11|fast_float)/|windows\.h")
    foreign = [str(path) for path in used - own if platform.search(str(path))]
    assert not foreign, f"a host needs {foreign}"
    stray = [str(path) for path in used - own if "Quorvex" in path.parts[-2:]]
    assert not stray, f"not installed: {stray}"


def symbols(scratch, prefix):
    library = library_folder(prefix) / "libquorvex.so"
    soname = re.search(r"SONAME.*\[(.*)\]", output("readelf", "-d", library)).group(1)
    assert re.fullmatch(r"libquorvex\.so\.\d+", soname) and (library.parent / soname).exists(), soname
    names = [line.split(maxsplit=2)[2] for line in output("nm", "-DC", "--defined-only", library).splitlines()]
    own = re.compile(r"((vtable|typeinfo|typeinfo name|guard variable) for |(non-)?virtual thunk to )?KOVA::Quorvex::")
    foreign = [name for name in names if not own.match(name)]
    assert not foreign, f"exported, but not the library's: {foreign}"
    seam = [name for name in names if "KOVA::Quorvex::platform::" in name.split("(")[0]]
    assert not seam, f"exported, but internal: {seam}"
    assert any("RenderFrame::RenderToBitmap" in name for name in names), "the interface is not exported"


def tool(scratch, prefix, file):
    program = prefix / "bin" / "quorvex"
    assert pathlib.Path(file).name in output(program, "info", file, env={"PATH": os.environ["PATH"]})


def main():
    scratch, action, *arguments = sys.argv[1:]
    scratch = pathlib.Path(scratch)
    actions = {"install": install, "cmake": cmake, "pkg-config": with_pkg_config, "headers": headers,
               "symbols": symbols, "tool": tool, "windows": windows}
    actions[action](scratch, scratch / "moved here", *arguments)


if __name__ == "__main__":
    main()
