"""check_test.py CHECK COMPILER: what tools/check finds in small trees, and what it lets pass."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

CHECK, COMPILER = sys.argv[1:3]
CLEAN = {
    "src/CMakeLists.txt": "main.cpp\n",
    "src/main.cpp": '#include <QWidget>\n#include "views/Field.h"\n',
    "src/util/CMakeLists.txt": "Name.cpp\n",
    "src/util/Name.cpp": '#include "util/Name.h"\nconst int kThree = 3;\n',
    "src/util/Name.h": "#pragma once\n// A name.\n",
    "src/views/Field.h": '#pragma once\n// A field.\n#include <QWidget>\n#include "util/Name.h"\n',
    "tests/util/CMakeLists.txt": "Name_test.cpp\n",
    "tests/util/Name_test.cpp": '// The "spec" of a name, std::filesystem: fine here.\n',
    "tools/checks/globals-allowed.txt": "src/util/Name.cpp known  # a reason\n",
}
HEADER = "#pragma once\n// A.\n"
NAME = "src/util/Name"
# One change to the clean tree, and the one line that it makes tools/check print.
FAULTS = [
    (f"{NAME}.h", HEADER + "#include <QString>\n", f"{NAME}.h:3: util may not"),
    (f"{NAME}.h", HEADER + '#include "views/Field.h"\n', f"{NAME}.h:3: util may not"),
    (f"{NAME}.h", HEADER + '#include "Other.h"\n', f'{NAME}.h:3: "Other.h" is no'),
    ("src/views/Field.h", HEADER + '#include "index/A.h"\n', 'src/views/Field.h:3: "index/A.h"'),
    (f"{NAME}.h", "// A name.\n", f"{NAME}.h:1: no #pragma"),
    (f"{NAME}.h", "#pragma once\n", f"{NAME}.h:1: no comment"),
    (f"{NAME}.h", HEADER + "int  a();\n", f"{NAME}.h:3: call clang-format"),
    (f"{NAME}.h", HEADER + "std::thread a();\n", f"{NAME}.h:3: std::thread"),
    (f"{NAME}.h", HEADER + "// A.\n" * 300, f"{NAME}.h:300: 302 lines"),
    (f"{NAME}.cpp", "// Kept: so.\n", f"{NAME}.cpp:1: no test named Keeps"),
    ("src/odd/Name.h", HEADER, "src/odd/Name.h:1: its folder has no row"),
    ("tests/util/Lost_test.cpp", "", "tests/util/Lost_test.cpp:1: not named in tests/util"),
    ("docs/a.md", "See pa" + "rt 3.2.\n", 'docs/a.md:1: "pa'),
    ("docs/a.md", "one\n/wo" + "rk/main\n", 'docs/a.md:2: "/wo'),
    ("docs/a.md", "TO" + "DO\n", 'docs/a.md:1: "TO'),
    ("do", "#!/usr/bin/env bash\nif\n", "do:3: "),
]


class Check(unittest.TestCase):
    def setUp(self):
        self.top = tempfile.mkdtemp()
        shutil.copy(os.path.join(os.path.dirname(CHECK), "..", ".clang-format"), self.top)
        for file, text in CLEAN.items():
            self.write(file, text)

    def tearDown(self):
        shutil.rmtree(self.top)

    def write(self, file, text):
        path = os.path.join(self.top, file)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w") as target:
            target.write(text)
        os.chmod(path, 0o755)

    def check(self, *arguments):
        done = subprocess.run([sys.executable, CHECK, "--top", self.top, *arguments],
                              capture_output=True, text=True)
        self.assertEqual(done.stderr, "")
        return done.returncode, done.stdout.splitlines()[:-1]

    def test_a_clean_tree_passes(self):
        self.assertEqual(self.check(), (0, []))

    def test_each_fault_is_found_alone(self):
        for file, text, expected in FAULTS:
            with self.subTest(expected=expected):
                self.setUp()
                self.write(file, text)
                status, lines = self.check()
                self.assertEqual((status, len(lines)), (1, 1), lines)
                self.assertTrue(lines[0].startswith(expected), lines)

    def test_writable_globals_are_found_in_the_object_files(self):
        source = "int known;\nconst int kOne = 1;\nthread_local int own;\n" \
                 "int loose = 2;\nint next() {\n    static int last;\n    return ++last;\n}\n"
        self.write("src/util/Name.cpp", source)
        self.write("build/dev/src/util/CMakeFiles/util.dir/Name.cpp.o", "")
        subprocess.run([COMPILER, "-fPIC", "-c", "src/util/Name.cpp", "-o",
                        "build/dev/src/util/CMakeFiles/util.dir/Name.cpp.o"],
                       cwd=self.top, check=True)
        self.assertEqual(self.check(), (1, ["src/util/Name.cpp:4: writable global: loose",
                                            "src/util/Name.cpp:6: writable global: next::last"]))

    def test_no_object_files_is_a_finding(self):
        self.assertEqual(self.check("--build", self.top)[0], 1)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
