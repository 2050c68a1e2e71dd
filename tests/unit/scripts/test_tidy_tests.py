#!/usr/bin/python3
"""scripts/tidy_tests.py: what is wrong in a file is found, whichever files share its translation unit."""

import json
import re
import shutil
import subprocess
import unittest

from checked_repository import SCRIPTS, CheckedRepository

GOOD = "int goodName();\n"
LOCAL = "namespace {\nint local = 1;\n}\nint {name}() { return local; }\n"


class TidyTests(CheckedRepository):
    """Each file is one of a build with handwritten commands. clang-tidy is the real one."""

    SCRIPT = "tidy_tests.py"

    def setUp(self):
        super().setUp()
        shutil.copy(SCRIPTS.parent / ".clang-tidy", self.root)

    def build(self, **options):
        """Compile commands for all the tests, with options by the name of the file."""
        entries = [
            {
                "directory": str(self.root),
                "file": str(path),
                "command": f"c++ {options.get(path.stem, '-DALL')} -I{self.root} -std=c++20 -o x.o -c {path}",
            }
            for path in sorted(self.root.glob("tests/*.cpp"))
        ]
        self.write("build/compile_commands.json", json.dumps(entries))

    def found(self):
        """Runs the check; "file: what" of each report. It fails exactly when it printed something."""
        subprocess.run(["git", "-C", self.root, "add", "tests"], check=True)
        ended = subprocess.run(
            ["/usr/bin/python3", "-B", "scripts/tidy_tests.py", "build", "stamps"],
            cwd=self.root,
            capture_output=True,
            text=True,
            check=False,
        )
        self.assertEqual(ended.stderr, "")
        self.assertEqual(ended.returncode, 1 if ended.stdout else 0, ended.stdout)
        reports = re.findall(
            r"^/\S*/(tests/[^:]*):\d+:\d+: error: (.*?)(?: \[|,|$)", ended.stdout, re.MULTILINE
        )
        return sorted(f"{path}: {what}" for path, what in reports) or ended.stdout

    def stamped(self):
        return sorted(path.name.split("-")[0] for path in self.root.glob("stamps/tests/*"))

    def test_files_without_a_report_are_stamped(self):
        for name in "abc":
            self.write(f"tests/{name}.cpp", GOOD)
        self.build()
        self.assertEqual(self.found(), "")
        self.assertEqual(self.stamped(), ["tests_a.cpp", "tests_b.cpp", "tests_c.cpp"])

    def test_wrong_name_in_a_group(self):
        for name in "abc":
            self.write(f"tests/{name}.cpp", GOOD)
        self.write("tests/b.cpp", "int Wrong_name();\n")
        self.build()
        self.assertEqual(self.found(), ["tests/b.cpp: invalid case style for function 'Wrong_name'"])
        self.assertNotIn("tests_b.cpp", self.stamped())
        self.write("tests/b.cpp", GOOD)
        self.assertEqual(self.found(), "")

    def test_file_that_changes_is_looked_at_again(self):
        self.write("tests/a.cpp", GOOD)
        self.build()
        self.assertEqual(self.found(), "")
        self.write("tests/a.cpp", "int Wrong_name();\n")
        self.assertEqual(self.found(), ["tests/a.cpp: invalid case style for function 'Wrong_name'"])

    def test_local_names_of_two_files(self):
        for name in "abc":
            self.write(f"tests/{name}.cpp", LOCAL.replace("{name}", f"{name}Name"))
        self.build()
        self.assertEqual(self.found(), "")
        self.write("tests/c.cpp", LOCAL.replace("{name}", "Wrong_name"))
        self.assertEqual(self.found(), ["tests/c.cpp: invalid case style for function 'Wrong_name'"])

    def test_error_in_a_header_that_names_a_file(self):
        self.write("system/same.h", "template <typename A> bool same(A a, int b) { return a == b; }\n")
        self.write("tests/a.cpp", "struct Box {};\nBox pick(int);\n")
        self.write(
            "tests/b.cpp",
            "#include <same.h>\nint pick(long);\nbool Wrong_name() { return same(pick(1), 1); }\n",
        )
        self.write("tests/c.cpp", GOOD)
        self.build(**{name: f"-isystem {self.root}/system" for name in "abc"})
        self.assertEqual(self.found(), ["tests/b.cpp: invalid case style for function 'Wrong_name'"])
        self.assertEqual(self.stamped(), ["tests_a.cpp", "tests_c.cpp"])

    def test_error_in_a_header_that_names_no_file(self):
        self.write("system/once.h", '#ifdef SEEN\n#error "twice"\n#endif\n#define SEEN\n')
        for name in "abc":
            self.write(f"tests/{name}.cpp", f"#include <once.h>\nint {name}Name();\n")
        self.write("tests/c.cpp", "#include <once.h>\nint Wrong_name();\n")
        self.build(**{name: f"-isystem {self.root}/system" for name in "abc"})
        self.assertEqual(self.found(), ["tests/c.cpp: invalid case style for function 'Wrong_name'"])
        self.assertEqual(self.stamped(), ["tests_a.cpp", "tests_b.cpp"])

    def test_file_that_does_not_compile(self):
        self.write("tests/a.cpp", GOOD)
        self.write("tests/b.cpp", "int goodName() { return otherName; }\n")
        self.build()
        self.assertEqual(self.found(), ["tests/b.cpp: use of undeclared identifier 'otherName'"])
        self.assertEqual(self.stamped(), ["tests_a.cpp"])

    def test_definitions_of_their_own(self):
        for number, name in enumerate("ab"):
            self.write(f"tests/{name}.cpp", f"#if OWN == {number}\nint Wrong_{name}();\n#endif\n")
        self.build(a="-DOWN=0", b="-DOWN=1")
        self.assertEqual(
            self.found(),
            [
                "tests/a.cpp: invalid case style for function 'Wrong_a'",
                "tests/b.cpp: invalid case style for function 'Wrong_b'",
            ],
        )

    def test_file_of_no_program(self):
        self.write("tests/a.cpp", GOOD)
        self.build()
        self.write("tests/b.cpp", GOOD)
        self.assertEqual(self.found(), "tests/b.cpp: no program of this build is made of it\n")


if __name__ == "__main__":
    unittest.main()
