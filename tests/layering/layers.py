#!/usr/bin/env python3
"""Checks who includes whom. docs/ARCHITECTURE.md explains the layers; the table below is what is enforced.

    layers.py ROOT PUBLIC_HEADER...     the public headers relative to ROOT/Quorvex
"""
import fnmatch
import pathlib
import re
import sys

# Lowest first. A file belongs to the first entry whose pattern matches it and includes only from its own layer or below.
LAYERS = [
    ("value types", ["core/Export.h", "core/Vectors.*", "core/Colors.*", "core/Matrix44d.*", "core/PixelOrder.h",
                     "core/ReadProgress.h"]),
    ("platform interfaces", ["platform/*.h", "platform/HostCallbacks.cpp"]),
    ("files and threads", ["core/OutputFile.*", "core/OutputPlace.*", "core/Parallel.*"]),
    # The facade's state is read by every layer above, so its header names only handles; its sources are at the top.
    ("facade's interface", ["core/Facade.h"]),
    ("view", ["view/*"]),
    ("extension loading", ["core/Extensions.*", "core/EntryPoints.*", "core/ExtensionTokens.h", "core/GlThread.*",
                           "core/OpenGL.h", "core/Shader.*"]),
    ("scene base", ["scene/RenderObject*", "scene/Storage.h"]),
    ("mesh, volume and overlay", ["mesh/*", "volume/*", "overlay/*"]),
    ("analysis", ["analysis/*"]),
    ("scene container", ["scene/ObjectTypes.*", "scene/ObjectList.h"]),
    ("frame", ["frame/*"]),
    ("facade", ["core/Facade.cpp", "core/Scheduler.*"]),
    ("umbrella", ["Quorvex.h"]),
]
PLATFORM = "platform implementation"
PLATFORM_USES = ["value types", "platform interfaces", PLATFORM]

# What draws asks the frame for its view and tells it the progress.
EXCEPTIONS = [("mesh/*Renderer*", "frame/RenderFrame.h"), ("volume/*Renderer*", "frame/RenderFrame.h"),
              ("overlay/*.cpp", "frame/RenderFrame.h"), ("scene/ObjectTypes.cpp", "frame/RenderFrame.h")]

# Give the system's own types where hosts have them.
HANDLES = "platform/Handles.h"
AVI_TYPES = "platform/AviTypes.h"
SYSTEM_TYPES = [(HANDLES, "windows.h"), (AVI_TYPES, "vfw.h")]

# System headers and the only places that may see them.
CONFINED = [
    (r"(EGL|X11|KHR)/.*|GL/glx.*|sys/(?!stat).*|unistd\.h|dlfcn\.h|poll\.h", ["platform/linux/*"]),
    (r"ft2build\.h|(freetype|fontconfig)/.*", ["platform/linux/labels/*"]),
    (r"lib(av|sw)\w+/.*", ["platform/linux/video/*"]),
    (r"sys/stat\.h|fcntl\.h|io\.h", ["platform/*/*"]),
    (r"(?i)windows\.h", ["platform/win32/*", HANDLES]),
    (r"(?i)vfw\.h", ["platform/win32/*", AVI_TYPES]),
    (r"GL/.*", ["core/OpenGL.h", "platform/*/*"]),
]
SYSTEM_NAMES = re.compile(r"#\s*(?:if|ifdef|ifndef|elif)\b.*\b(?:_?WIN(?:32|64)|__linux__|__unix__|__APPLE__|_MSC_VER)\b")
SYSTEM_NAMES_ALLOWED = ["core/Export.h", "platform/*"]

# Not in the umbrella: for hosts that hand native windows over.
OPT_IN = "platform/NativeWindow.h"

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def matches(name, patterns):
    return any(fnmatch.fnmatchcase(name, pattern) for pattern in patterns)


def layer_of(name):
    if name.startswith("platform/") and name.count("/") > 1:
        return PLATFORM
    return next((layer for layer, patterns in LAYERS if matches(name, patterns)), None)


def may_include(name, included):
    layer, other = layer_of(name), layer_of(included)
    if layer == PLATFORM:
        return other in PLATFORM_USES
    if other == PLATFORM:
        return False
    order = [entry[0] for entry in LAYERS]
    return order.index(other) <= order.index(layer) or any(
        fnmatch.fnmatchcase(name, source) and included == target for source, target in EXCEPTIONS)


def check_library_file(name, text, files, public):
    if layer_of(name) is None:
        yield f"{name}: belongs to no layer; enter it in the table"
        return
    if SYSTEM_NAMES.search(text) and not matches(name, SYSTEM_NAMES_ALLOWED):
        yield f"{name}: asks which system it is on; only the platform's sources know"
    for bracket, included in INCLUDE.findall(text):
        if bracket == '"':
            yield f'{name}: includes "{included}"; write <Quorvex/...>'
        elif included.startswith("Quorvex/"):
            target = included.removeprefix("Quorvex/")
            if target not in files or layer_of(target) is None:
                yield f"{name}: includes <{included}>, which is not there"
            elif not may_include(name, target):
                yield f"{name} ({layer_of(name)}): includes {target} ({layer_of(target)}), which lies above"
            elif name in public and target not in public:
                yield f"{name}: is public and includes {target}, which is not"
        else:
            if name in public and re.search(r"[./]", included) and (name, included) not in SYSTEM_TYPES:
                yield f"{name}: is public and includes <{included}>; hosts should need the C++ library only"
            places = next((places for header, places in CONFINED if re.fullmatch(header, included)), None)
            if places and not matches(name, places):
                yield f"{name}: includes <{included}>, which belongs to {' or '.join(places)}"


def check_library(files, public):
    """files: path below Quorvex/ -> text. Returns what is wrong, one line each."""
    problems = [problem for name, text in sorted(files.items())
                for problem in check_library_file(name, text, files, public)]
    umbrella = {included.removeprefix("Quorvex/") for _, included in INCLUDE.findall(files.get("Quorvex.h", ""))}
    for header in sorted(set(public) - {OPT_IN, "Quorvex.h"} - umbrella):
        problems.append(f"Quorvex.h: lacks {header}, which is public")
    return problems


def check_hosts(files, public):
    """Programs beside the library use what every host can use."""
    return [f"{name}: includes <{included}>, which is not public"
            for name, text in sorted(files.items()) for _, included in INCLUDE.findall(text)
            if included.startswith("Quorvex/") and included.removeprefix("Quorvex/") not in public]


def read(folder, relative_to):
    return {path.relative_to(relative_to).as_posix(): path.read_text()
            for suffix in ("*.h", "*.cpp") for path in folder.rglob(suffix)}


def main():
    root = pathlib.Path(sys.argv[1])
    public = sys.argv[2:]
    library = read(root / "Quorvex", root / "Quorvex")
    hosts = {name: text for folder in ("apps", "data", "examples", "tests/package/consumer")
             for name, text in read(root / folder, root).items()}
    problems = check_library(library, public) + check_hosts(hosts, public)
    print("\n".join(problems))
    print(f"{len(library)} files of the library, {len(hosts)} of its hosts, {len(problems)} problems")
    return 1 if problems or not library else 0


if __name__ == "__main__":
    sys.exit(main())
