"""The rule of who includes whom, on the program's own sources and on small trees that break it."""
import tempfile
import unittest
from pathlib import Path

import layers

SRC = Path(__file__).resolve().parents[2] / "src"


class TestLayers(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.src = Path(folder.name)
        for name in layers.MAY_INCLUDE:
            self.write(f"{name}/{name}.h", "#pragma once\n")

    def write(self, name, text):
        file = self.src / name
        file.parent.mkdir(exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def assert_problem(self, *parts):
        found = layers.problems(self.src)
        self.assertEqual(len(found), 1, found)
        for part in parts:
            self.assertIn(part, found[0])

    def assert_none(self):
        self.assertEqual(layers.problems(self.src), [])

    def test_every_include_of_the_sources_points_down(self):
        self.assertEqual(layers.problems(SRC), [])

    def test_the_sources_are_looked_at(self):
        """A check that finds no files, no includes or no libraries would pass as well."""
        files = [path for path in SRC.rglob("*") if path.suffix in layers.SOURCES]
        self.assertGreater(len(files), 200)
        for folder in layers.MAY_INCLUDE:
            self.assertTrue(any((SRC / folder).glob("*.cpp")), folder)
        self.assertIn(("engine/output_entry.h", True), layers.includes(SRC / "engine/entry_list.h"))
        controls, links = layers.libraries(SRC / "ui/CMakeLists.txt")[layers.CONTROLS]
        self.assertIn("log_list.cpp", controls)
        self.assertIn("carvello_support", links)

    def test_every_arrow_that_is_not_allowed_is_found(self):
        for folder, allowed in layers.MAY_INCLUDE.items():
            for target in layers.MAY_INCLUDE:
                self.write(f"{folder}/wrong.cpp", f'#include "{target}/{target}.h"\n')
                if target == folder or target in allowed:
                    self.assert_none()
                else:
                    self.assert_problem(f"{folder}/wrong.cpp", f"{folder} may not include {target}")
                (self.src / folder / "wrong.cpp").unlink()

    def test_rules_have_no_circle(self):
        order = []
        while len(order) < len(layers.MAY_INCLUDE):
            free = [name for name, allowed in layers.MAY_INCLUDE.items() if name not in order and allowed <= set(order)]
            self.assertTrue(free)
            order += free

    def test_an_include_is_found_however_it_is_written(self):
        for text in ('  #  include "engine/engine.h"\n', '#pragma once\n\n\t#include "engine/engine.h" // why\n',
                     "#include <engine/engine.h>\n"):
            self.write("support/wrong.h", text)
            self.assert_problem("support/wrong.h", "engine/engine.h")

    def test_a_way_round_by_a_path_is_found(self):
        self.write("support/wrong.cpp", '#include "../engine/engine.h"\n')
        self.assert_problem("leads out of its folder")

    def test_a_header_of_another_folder_without_its_name_is_found(self):
        self.write("support/wrong.cpp", '#include "engine.h"\n')
        self.assert_problem("no header of this folder")
        self.write("support/wrong.cpp", '#include "support.h"\n')
        self.assert_none()

    def test_headers_that_are_nowhere_are_found(self):
        self.write("support/wrong.cpp", '#include "support/gone.h"\n')
        self.assert_problem("no such header")
        self.write("support/wrong.cpp", '#include "elsewhere/gone.h"\n')
        self.assert_problem("no folder of src")

    def test_a_comment_is_no_include(self):
        self.write("support/right.cpp", '// #include "engine/engine.h"\n')
        self.assert_none()

    def test_a_library_can_belong_to_one_file(self):
        self.write("cli/wrong.cpp", "#include <CLI/CLI.hpp>\n")
        self.assert_problem("belongs to cli/command_line.cpp")
        self.write("cli/wrong.cpp", "")
        self.write("cli/command_line.cpp", "#include <CLI/CLI.hpp>\n")
        self.assert_none()

    def test_qt_belongs_to_the_window(self):
        self.write("engine/wrong.cpp", "#include <QString>\n")
        self.assert_problem("belongs to ui")
        self.write("engine/wrong.cpp", "")
        self.write("ui/right.cpp", '#include <QString>\n\n#include "ui_form.h"\n')
        self.assert_none()

    def test_what_differs_between_systems_is_a_file_of_its_own(self):
        self.write("support/wrong.cpp", "#ifdef __GNUC__\n#endif\n#if defined(_WIN32) && 1\n#endif\n")
        self.assert_problem("support/wrong.cpp", "_WIN32")
        self.write("support/wrong.cpp", "#ifndef __linux__\n#endif\n")
        self.assert_problem("support/wrong.cpp", "__linux__")

    def test_a_folder_without_a_rule_is_found(self):
        self.write("extra/extra.h", "")
        self.assert_problem("extra", "no rule")

    def test_a_link_that_points_up_is_found(self):
        self.write("support/CMakeLists.txt",
                   "carvello_library(carvello_support\n  SOURCES a.cpp\n  DEPENDS Threads::Threads carvello_engine)\n")
        self.assert_problem("carvello_support may not link carvello_engine")
        self.write("support/CMakeLists.txt", "carvello_library(carvello_support SOURCES a.cpp DEPENDS Threads::Threads)")
        self.assert_none()

    def test_a_link_that_is_added_later_counts(self):
        self.write("vantrel/CMakeLists.txt",
                   "add_library(parts OBJECT a.cpp)\n"
                   "target_link_libraries(parts PRIVATE carvello_warnings PUBLIC carvello_fourier Threads::Threads)\n")
        self.assert_none()
        self.write("vantrel/CMakeLists.txt", "target_link_libraries(parts PRIVATE carvello_dsp)\n")
        self.assert_problem("parts may not link carvello_dsp")

    def test_controls_that_know_the_engine_or_the_dialog_are_found(self):
        self.write("ui/CMakeLists.txt",
                   "carvello_library(carvello_controls SOURCES list.cpp DEPENDS carvello_support)\n"
                   "carvello_library(carvello_ui SOURCES dialog.cpp DEPENDS carvello_engine carvello_controls)\n")
        self.write("ui/dialog.h", '#include "engine/engine.h"\n')
        self.write("ui/dialog.cpp", '#include "ui/dialog.h"\n\n#include "ui/list.h"\n')
        self.write("ui/list.h", '#include "support/support.h"\n')
        self.write("ui/list.cpp", '#include "ui/list.h"\n')
        self.assert_none()
        self.write("ui/list.h", '#include "engine/engine.h"\n')  # through a header
        self.assert_problem("ui/list.h", "the controls know neither")
        self.write("ui/list.h", "")
        self.write("ui/list.cpp", '#include "ui/list.h"\n\n#include "ui/dialog.h"\n')
        found = layers.problems(self.src)
        self.assertIn("ui/list.cpp: ui/dialog.h: the controls know neither the dialog nor the engine", found)


if __name__ == "__main__":
    unittest.main()
