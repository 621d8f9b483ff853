#!/usr/bin/env python3
"""Runs clang-tidy over the project's sources, two at a time.

    tidy.py BUILD [PART]    only the sources with PART (a regular expression) in their path

A source that passed is not looked at again until something that clang-tidy sees of it changes: its text, a header of the
project that it includes, its compile command, the checks, or the version of clang-tidy. What passed is remembered in
<build>/tidy as empty files named by the hash of all that.
"""
import concurrent.futures
import functools
import hashlib
import json
import pathlib
import re
import shlex
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


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


def key(entry, files, version):
    digest = hashlib.sha256(version.encode() + entry["command"].encode())
    configurations = [folder / ".clang-tidy" for folder in pathlib.Path(entry["file"]).parents]
    for path in sorted({*files, pathlib.Path(entry["file"]), *configurations}):
        if path.is_file():
            digest.update(str(path).encode() + b"\0" + path.read_bytes())
    return digest.hexdigest()


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    part = sys.argv[2] if len(sys.argv) > 2 else ""
    cache = build / "tidy"
    cache.mkdir(exist_ok=True)
    version = subprocess.run(["clang-tidy", "--version"], check=True, capture_output=True, text=True).stdout

    entries = [entry for entry in json.loads((build / "compile_commands.json").read_text())
               if pathlib.Path(entry["file"]).is_relative_to(ROOT)
               and not pathlib.Path(entry["file"]).is_relative_to(build)
               and re.search(part, str(pathlib.Path(entry["file"]).relative_to(ROOT)))]
    for entry in entries:
        words = plain(entry["command"])
        entry["command"] = shlex.join(words)
        entry["output"] = words[words.index("-o") + 1]
    (cache / "compile_commands.json").write_text(json.dumps(entries))

    objects = dependencies(build)

    def includes(output):
        # What came in through a precompiled header is recorded with that header, once for the target.
        precompiled = output.split(".dir/")[0] + ".dir/cmake_pch.hxx.gch"
        return objects.get(output, []) + objects.get(precompiled, [])

    todo = {}
    for entry in entries:
        passed = cache / key(entry, includes(entry["output"]), version)
        if not passed.exists():
            todo[entry["file"]] = passed

    def check(item):
        run = subprocess.run(["clang-tidy", "-p", cache, "--quiet", "--extra-arg=-Wno-unknown-warning-option", item[0]],
                             capture_output=True, text=True)
        return item, run

    failed = 0
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        for (source, passed), run in pool.map(check, todo.items()):
            if run.returncode == 0:
                passed.touch()
            else:
                failed += 1
                print(run.stdout.strip() or run.stderr.strip(), flush=True)
    print(f"clang-tidy: {len(entries)} sources, {len(todo)} looked at, {failed} with findings")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
