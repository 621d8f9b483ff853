#!/usr/bin/env python3
"""Runs clang-tidy over the project's sources, two processes at a time.

    tidy.py BUILD [PART]    only the sources with PART (a regular expression) in their path

Most of the time would go into the headers of libraries, so sources that are compiled alike are looked at together, as
one unit that includes them all. A unit with findings is cut in halves, down to single sources: what is reported was found
in a source by itself.

A source that passed is not looked at again until something that clang-tidy sees of it changes: its text, a header of the
project that it includes, its compile command, the checks, or the version of clang-tidy. What passed is remembered in
<build>/tidy as empty files named by the hash of all that.
"""
import concurrent.futures
import functools
import hashlib
import itertools
import json
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
UNIT = 8  # sources at most that are looked at together


def dependencies(build):
    """Object file -> the project's files that it was compiled from, as ninja recorded them."""
    listing = subprocess.run(["ninja", "-C", build, "-t", "deps"], check=True, capture_output=True, text=True).stdout
    result, current = {}, None
    for line in listing.splitlines():
        if line and not line[0].isspace():
            current = result.setdefault(line.split(":")[0], [])
        elif line:
            path = (build / line.strip()).resolve()
            if path.is_relative_to(ROOT) and not path.is_relative_to(build):
                current.append(path)
    return result


@functools.cache
def include_folders(compiler):
    """Where the compiler finds its own headers, those of the C++ library and the system's."""
    listing = subprocess.run([compiler, "-xc++", "-E", "-v", "/dev/null"], check=True, capture_output=True, text=True).stderr
    folders = listing.split("#include <...> search starts here:")[1].split("End of search list.")[0].split()
    return [folder for folder in folders if not folder.endswith(("/include-fixed", "posix/include"))]


def plain(command):
    """The compile command without what another compiler cannot use: the launcher, precompiled headers, and what a cross
    compiler has built in."""
    words = shlex.split(command)
    if pathlib.Path(words[0]).name == "ccache":
        words = words[1:]
    result = []
    cross = re.match(r"(.*-mingw32)-g\+\+", pathlib.Path(words[0]).name)
    if cross:
        result = ["clang++", f"--target={cross[1]}", *(f"-isystem{folder}" for folder in include_folders(words[0]))]
        words = [word for word in words[1:] if word != "-fno-keep-inline-dllexport"]
    skip = False
    for word, following in zip(words, [*words[1:], ""]):
        if skip:
            skip = False
        elif word == "-include" and pathlib.Path(following).name.startswith("cmake_pch"):
            skip = True
        elif word != "-Winvalid-pch":
            result.append(word)
    return result


def configurations(source):
    """The project's files that say which checks are made of a source, nearest first; the last is for all sources."""
    return [folder / ".clang-tidy" for folder in source.parents
            if folder.is_relative_to(ROOT) and (folder / ".clang-tidy").is_file()]


def sources_of(entry):
    """The sources of a compile command: one, or those that the build compiles together."""
    source = pathlib.Path(entry["file"])
    if "Unity" not in source.parts:
        return [source]
    return [pathlib.Path(path) for path in re.findall(r'^#include "(.+)"$', source.read_text(), re.MULTILINE)]


class Source:
    def __init__(self, path, entry, objects, version):
        words = plain(entry["command"])
        # The names of the object and of the source are last, and no part of how it is compiled.
        end = words.index("-o")
        output = words[end + 1]
        self.path, self.directory, self.words = path, entry["directory"], words[:end]
        # What came in through a precompiled header is recorded with that header, once for the target.
        precompiled = output.split(".dir/")[0] + ".dir/cmake_pch.hxx.gch"
        files = {*objects.get(output, []), *objects.get(precompiled, []), path, *configurations(path)}
        digest = hashlib.sha256(version.encode() + shlex.join(self.words).encode())
        for file in sorted(files):
            digest.update(str(file).encode() + b"\0" + file.read_bytes())
        self.key = digest.hexdigest()

    def alike(self):
        """What sources of one unit have in common."""
        return self.directory, self.words, str(configurations(self.path)[0])


def units(sources):
    """Rows of sources that are compiled alike, about equally long."""
    for _, group in itertools.groupby(sorted(sources, key=Source.alike), Source.alike):
        group = list(group)
        count = -(-len(group) // UNIT)
        for i in range(count):
            yield group[i * len(group) // count:(i + 1) * len(group) // count]


def tidy(sources, folder):
    """Runs clang-tidy; returns its exit status and what it printed. The folder, in the project, is for its files."""
    arguments = []
    unit = sources[0].path
    if len(sources) > 1:
        # Below configurations that inherit from each other like those of the sources; the one for all is further up.
        for configuration in reversed(configurations(unit)[:-1]):
            folder /= "inner"
            folder.mkdir()
            shutil.copy(configuration, folder)
        unit = folder / "unit.cpp"
        unit.write_text("".join(f'#include "{source.path}"\n' for source in sources))
        arguments = ["--checks=-bugprone-suspicious-include", "--header-filter=/(Quorvex|apps|examples|bench|tests)/"]
    (folder / "compile_commands.json").write_text(json.dumps([{
        "directory": sources[0].directory, "file": str(unit),
        "command": shlex.join([*sources[0].words, "-c", str(unit)])}]))
    run = subprocess.run(["clang-tidy", "-p", folder, "--quiet", "--extra-arg=-Wno-unknown-warning-option", *arguments,
                          unit], capture_output=True, text=True)
    return run.returncode, run.stdout.strip() or run.stderr.strip()


def check(sources, cache):
    """Looks at a unit; returns what was found in which of its sources."""
    with tempfile.TemporaryDirectory(dir=cache) as scratch:
        status, printed = tidy(sources, pathlib.Path(scratch))
    if status == 0:
        for source in sources:
            (cache / source.key).touch()
        return {}
    if len(sources) == 1:
        return {sources[0].path: printed}
    half = len(sources) // 2
    return {**check(sources[:half], cache), **check(sources[half:], cache)}


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    part = sys.argv[2] if len(sys.argv) > 2 else ""
    cache = build / "tidy"
    cache.mkdir(exist_ok=True)
    version = subprocess.run(["clang-tidy", "--version"], check=True, capture_output=True, text=True).stdout
    objects = dependencies(build)

    sources = [Source(path, entry, objects, version)
               for entry in json.loads((build / "compile_commands.json").read_text()) for path in sources_of(entry)
               if path.is_relative_to(ROOT) and not path.is_relative_to(build)
               and re.search(part, str(path.relative_to(ROOT)))]
    todo = [source for source in sources if not (cache / source.key).exists()]
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        for found in pool.map(lambda unit: check(unit, cache), units(todo)):
            failed += len(found)
            for printed in found.values():
                print(printed, flush=True)
    print(f"clang-tidy: {len(sources)} sources, {len(todo)} looked at, {failed} with findings")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
