#!/usr/bin/env python3
"""Checks what the DLL and the programs need and what the DLL offers: system libraries only, and the library's names only.

    dll.py OBJDUMP DLL PROGRAM...
"""
import pathlib
import re
import subprocess
import sys

SYSTEM = {"avifil32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "msvfw32.dll", "ole32.dll", "opengl32.dll", "user32.dll",
          "windowscodecs.dll"}
# Mangled: anything in KOVA::Quorvex, with its virtual tables and type names, and the types of standard exceptions that
# leave the library.
EXPORTED = re.compile(r"^_Z(?:T[VIS]|Thn\d+_|GV)?NK?4KOVA7Quorvex"
                      r"|^_ZTISt\d+(exception|runtime_error|bad_alloc|bad_array_new_length)$")


def main():
    objdump, dll, *programs = sys.argv[1:]
    own = pathlib.Path(dll).name.lower()
    problems = []
    for path in [dll, *programs]:
        text = subprocess.run([objdump, "-p", path], check=True, capture_output=True, text=True).stdout
        needed = {name.lower() for name in re.findall(r"DLL Name: (\S+)", text)}
        problems += [f"{path} needs {name}" for name in sorted(needed - SYSTEM - {own})]
        if path == dll:
            table = text.split("[Ordinal/Name Pointer] Table", 1)[1].split("\n\n", 1)[0]
            names = re.findall(r"^\s+\[ *\d+\] (?:\+base\[ *\d+\] \S+ )?(\S+)$", table, re.MULTILINE)
            problems += [f"{path} exports {name}" for name in names if not EXPORTED.search(name)]
            if not any("Quorvex4Init" in name for name in names):
                problems.append(f"{path} does not export Quorvex::Init; {len(names)} names seen")
    print("\n".join(problems) or f"{len(names)} names exported; nothing else is needed than the system")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
