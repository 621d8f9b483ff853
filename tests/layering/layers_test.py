#!/usr/bin/env python3
"""Every rule of layers.py reports its violation, and only that."""
import unittest

import layers

PUBLIC = ["Quorvex.h", "core/Facade.h", "mesh/Mesh.h", "frame/RenderFrame.h", "platform/NativeWindow.h"]
SOUND = {
    "Quorvex.h": "#include <Quorvex/core/Facade.h>\n#include <Quorvex/mesh/Mesh.h>\n"
                 "#include <Quorvex/frame/RenderFrame.h>\n",
    "core/Facade.h": "#include <list>\n",
    "core/Facade.cpp": "#include <Quorvex/frame/RenderFrame.h>\n",
    "core/OpenGL.h": "#include <GL/gl.h>\n",
    "core/Export.h": "#if defined(_WIN32)\n",
    "mesh/Mesh.h": "#include <vector>\n",
    "mesh/Secret.h": "",
    "mesh/MeshRenderer.cpp": "#include <Quorvex/frame/RenderFrame.h>\n#include <Quorvex/core/OpenGL.h>\n",
    "frame/RenderFrame.h": "#include <Quorvex/mesh/Mesh.h>\n",
    "platform/NativeWindow.h": "",
    "platform/linux/Windows.cpp": "#include <X11/Xlib.h>\n#include <Quorvex/platform/NativeWindow.h>\n",
}


class Library(unittest.TestCase):
    def expect(self, name, text, problem):
        problems = layers.check_library({**SOUND, name: SOUND.get(name, "") + text}, PUBLIC)
        self.assertEqual(len(problems), 1, problems)
        self.assertIn(problem, problems[0])

    def test_sound_tree_has_no_problems(self):
        self.assertEqual(layers.check_library(SOUND, PUBLIC), [])

    def test_upward_includes(self):
        self.expect("mesh/MeshData.cpp", "#include <Quorvex/frame/RenderFrame.h>\n", "lies above")
        self.expect("view/View.cpp", "  #  include <Quorvex/mesh/Mesh.h>\n", "lies above")
        self.expect("frame/Drawing.cpp", "#include <Quorvex/platform/linux/Windows.cpp>\n", "lies above")
        self.expect("platform/linux/Windows.cpp", "#include <Quorvex/core/Facade.h>\n", "lies above")

    def test_includes_that_cannot_be_judged(self):
        self.expect("mesh/Mesh.h", '#include "MeshData.h"\n', "write <Quorvex/...>")
        self.expect("mesh/Mesh.h", "#include <Quorvex/mesh/Gone.h>\n", "not there")
        self.expect("core/New.h", "", "no layer")

    def test_public_headers_stand_alone(self):
        self.expect("mesh/Mesh.h", "#include <Quorvex/mesh/Secret.h>\n", "is public")
        self.expect("mesh/Mesh.h", "#include <fmt/core.h>\n", "C++ library only")
        problems = layers.check_library({**SOUND, "Quorvex.h": ""}, PUBLIC)
        self.assertEqual(len(problems), 3, problems)

    def test_system_headers_and_names_are_confined(self):
        self.expect("mesh/Secret.h", "#include <X11/Xlib.h>\n", "platform/linux")
        self.expect("core/OpenGL.h", "#include <GL/glx.h>\n", "platform/linux")
        self.expect("frame/Capture.cpp", "#include <GL/glext.h>\n", "core/OpenGL.h")
        self.expect("platform/linux/Windows.cpp", "#include <Windows.h>\n", "platform/win32")
        self.expect("mesh/Secret.h", "#include <windows.h>\n", "platform/Handles.h")
        self.expect("mesh/Secret.h", "#include <io.h>\n", "platform/*/*")
        self.expect("frame/Capture.cpp", "#if defined(__linux__) && 1\n", "which system")

    def test_hosts_use_public_headers_only(self):
        sound = {"apps/cli/Main.cpp": "#include <Quorvex/Quorvex.h>\n#include <fmt/core.h>\n"}
        self.assertEqual(layers.check_hosts(sound, PUBLIC), [])
        self.assertEqual(len(layers.check_hosts({"examples/B.cpp": "#include <Quorvex/mesh/Secret.h>\n"}, PUBLIC)), 1)


if __name__ == "__main__":
    unittest.main()
