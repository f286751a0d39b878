#!/usr/bin/env python3
"""The checkers find what they are for: each test seeds one violation in a small tree and expects its report."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
GOOD_HEADER = "// One: the smallest class there is.\n#pragma once\n\n#include <string>\n\nint One(const std::string& text);\n"
GOOD_SOURCE = '// One: see the header.\n#include "brindle/one/one.h"\n\nint One(const std::string& text) {\n    return text.empty() ? 0 : 1;\n}\n'


class CheckTest(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="check-"))
        self.addCleanup(shutil.rmtree, self.root)
        shutil.copy(ROOT / ".clang-format", self.root)
        self.write("cmake/layers.txt", "brindle/one ->\nbrindle/two -> brindle/one\nbrindle/platform/linux ->\n"
                                       "brindle/platform ->\nhost -> public\napps -> public desktop\n<json/> -> host\n")
        self.write("cmake/public-headers.txt", "# public\nbrindle/one/one.h\n")
        self.write("brindle/one/one.h", GOOD_HEADER)
        self.write("brindle/one/one.cpp", GOOD_SOURCE)
        self.write("brindle/two/two.h", "// Two: needs one.\n#pragma once\n\n#include \"brindle/one/one.h\"\n")

    def write(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)

    def check(self, *names):
        run = subprocess.run([sys.executable, str(ROOT / "tools/check"), "--root", str(self.root), *names],
                             capture_output=True, text=True, check=False)
        return run.returncode, run.stdout + run.stderr

    def finds(self, name, text):
        code, output = self.check(name)
        self.assertEqual(code, 1, output)
        self.assertIn(text, output)

    def passes(self, *names):
        code, output = self.check(*names)
        self.assertEqual(code, 0, output)

    def seed(self, line, path="brindle/one/seed.cpp"):
        """A source with one line inside a function."""
        self.write(path, f"// Seed.\n#include <ctime>\n\nvoid Seed() {{\n    {line}\n}}\n")

    def test_clean_tree_passes_everything(self):
        self.passes()

    def test_wrong_usage(self):
        for arguments in (["nonsense"], ["exports"], ["--build"]):
            with self.subTest(arguments):
                self.assertEqual(self.check(*arguments)[0], 2)

    def test_layers(self):
        rows = [
            ("an arrow outward", "brindle/one/x.cpp", '#include "brindle/two/two.h"',
             "brindle/one must not include brindle/two"),
            ("a backend's header", "brindle/one/x.cpp", "#include <unistd.h>", "must not include <unistd.h>"),
            ("another library's", "brindle/one/x.cpp", "#include <json/json.h>", "must not include <json/json.h>"),
            ("with spaces", "brindle/one/x.cpp", "  #  include <libxml/tree.h>", "must not include <libxml/tree.h>"),
            ("a missing file", "brindle/one/x.cpp", '#include "one.h"', "no such file from the top"),
            ("quotes outside", "host/x.cpp", '#include "brindle/one/one.h"', "written with <> outside"),
            ("brackets inside", "brindle/one/x.cpp", "#include <brindle/one/one.h>", 'written with "" inside'),
            ("a private header", "host/x.cpp", "#include <brindle/two/two.h>", "is a private header"),
            ("public on private", "brindle/one/x.h", '#include "brindle/two/two.h"', "is private"),
            ("a test's helper", "brindle/one/x.cpp", '#include "testing/help.h"', "for tests only"),
            ("an unknown folder", "brindle/three/x.cpp", "", "is not in cmake/layers.txt"),
        ]
        self.write("testing/help.h", "#pragma once\n")
        self.write("cmake/public-headers.txt", "brindle/one/one.h\nbrindle/one/x.h\n")
        for label, path, include, expected in rows:
            with self.subTest(label):
                self.write(path, f"// Seed.\n{include}\n")
                self.finds("layers", expected)
                (self.root / path).unlink()

    def test_layers_let_pass(self):
        rows = [
            ("a comment", "brindle/one/x.cpp", "// #include <unistd.h>"),
            ("inward", "brindle/two/x.cpp", '#include "brindle/one/one.h"'),
            ("a backend", "brindle/platform/linux/x.cpp", "#include <unistd.h>"),
            ("a permitted library", "host/x.cpp", "#include <json/json.h>"),
            ("a public header", "host/x.cpp", "#include <brindle/one/one.h>"),
            ("a desktop header", "apps/x.cpp", "#include <brindle/two/two.h>"),
            ("a test", "brindle/one/x_test.cpp", '#include "brindle/two/two.h"'),
        ]
        self.write("cmake/desktop-headers.txt", "brindle/two/two.h\n")
        for label, path, include in rows:
            with self.subTest(label):
                self.write(path, f"// Seed.\n{include}\n")
                self.passes("layers")
                (self.root / path).unlink()

    def test_layers_refuse_a_cycle(self):
        self.write("cmake/layers.txt", "brindle/one -> brindle/two\nbrindle/two -> brindle/one\n")
        self.finds("layers", "a cycle: brindle/one -> brindle/two -> brindle/one")

    def test_rules(self):
        rows = [
            ("time", "std::time(nullptr);", "[time]"),
            ("global time", "::time(nullptr);", "[time]"),
            ("in a condition", "if (time(nullptr) > 0) return;", "[time]"),
            ("localtime_r", "localtime_r(&a, &b);", "[time]"),
            ("a clock", "std::chrono::steady_clock::now();", "[time]"),
            ("environment", 'std::getenv("HOME");', "[environment]"),
            ("directory", "getcwd(buffer, 10);", "[directory]"),
            ("directory by filesystem", "std::filesystem::current_path();", "[directory]"),
            ("random", "rand();", "[random]"),
            ("a random device", "std::random_device device;", "[random]"),
            ("program", 'system("ls");', "[program]"),
            ("file", "std::ifstream file(name);", "[files]"),
            ("number", "strtod(text, &end);", "[locale]"),
            ("std number", "std::stoi(text);", "[locale]"),
            ("letter case", "toupper(c);", "[locale]"),
            ("class", "std::isspace(c);", "[locale]"),
            ("stream", "std::ostringstream out;", "[locale]"),
            ("printed double", 'std::snprintf(b, 10, "%5.2f", d);', "[printf]"),
            ("printed below", 'std::snprintf(b, 10,\n                  "%g", d);', "[printf]"),
            ("a regular expression", "std::regex expression(text);", "[regex]"),
            ("a locale", "std::locale user(name);", "[locale]"),
            ("platform", "#ifdef _WIN32\n#endif", "[system]"),
        ]
        for label, line, expected in rows:
            with self.subTest(label):
                self.seed(line)
                self.finds("rules", expected)
                self.finds("rules", "brindle/one/seed.cpp:5")

    def test_rules_let_pass(self):
        rows = [
            ("a member", "event.time(1);"),
            ("through a pointer", "event->time(1);"),
            ("of a class", "Recorder::time(1);"),
            ("a longer name", "runtime(1);"),
            ("in a comment", "// time(nullptr)"),
            ("in a string", 'Log("time(nullptr)");'),
            ("in a raw string", 'Log(R"(getenv("A"))");'),
            ("printed integer", 'std::snprintf(b, 10, "%04X %%f", d);'),
            ("a classic regular expression", "std::regex r;\n    r.imbue(std::locale::classic());"),
            ("an include", "#include <regex>"),
            ("with a reason", "std::time(nullptr);  // tools/check: time: the backend's own"),
            ("reason above", "// tools/check: time: the backend's own\n    std::time(nullptr);"),
        ]
        for label, line in rows:
            with self.subTest(label):
                self.seed(line)
                self.passes("rules")

    def test_rules_want_a_reason(self):
        self.seed("std::time(nullptr);  // tools/check: time:")
        self.finds("rules", "[time]")

    def test_rules_leave_backends_and_tests_alone(self):
        for path in ("brindle/platform/linux/seed.cpp", "brindle/one/seed_test.cpp", "testing/seed.cpp"):
            with self.subTest(path):
                self.seed("std::time(nullptr);", path)
                self.passes("rules")
                (self.root / path).unlink()

    def test_sizes(self):
        long_file = "// Long.\n" + "int x;\n" * 650
        self.write("brindle/one/long.cpp", long_file)
        code, output = self.check("rules")
        self.assertEqual(code, 0)
        self.assertIn("warning: 651 lines", output)
        self.write("brindle/one/long.cpp", long_file + "int x;\n" * 50)
        self.finds("rules", "error: 701 lines, more than 700")

    def test_long_lines(self):
        self.write("brindle/one/long.cpp", "// " + "x" * 117 + "\n")
        self.passes("rules")
        self.write("brindle/one/long.cpp", "// " + "x" * 118 + "\n")
        self.finds("rules", "a line of 121 characters")

    def test_long_functions(self):
        rows = [("free", "void Long() {{\n{}}}\n", "    "), ("of a class", "class C {{\n    void Long() {{\n{}    }}\n}};\n", "        "),
                ("const noexcept", "int C::Long(int a) const noexcept {{\n{}}}\n", "    "),
                ("a constructor", "C::C(int a)\n    : a_(a),\n      b_(a) {{\n{}}}\n", "    "),
                ("over two lines", "void Long(int a,\n          int b) {{\n{}}}\n", "    ")]
        for label, frame, indent in rows:
            with self.subTest(label):
                head = frame.split("{}")[0].count("\n") - ("class" in frame)
                body = 59 - head
                self.write("brindle/one/long.cpp", "// Long.\n" + frame.format(f"{indent}x();\n" * body))
                self.passes("rules")
                self.write("brindle/one/long.cpp", "// Long.\n" + frame.format(f"{indent}x();\n" * (body + 1)))
                self.finds("rules", "a function of 61 lines")

    def test_names(self):
        rows = [("twice", "brindle/two/one.h", GOOD_HEADER, "has the same name as brindle/one/one.h"),
                ("letter case", "brindle/one/One.h", GOOD_HEADER, "snake_case"),
                ("no guard", "brindle/one/bare.h", "// Bare.\n", "#pragma once"),
                ("no purpose", "brindle/one/bare.cpp", "int x;\n", "does not open with a paragraph")]
        for label, path, text, expected in rows:
            with self.subTest(label):
                self.write(path, text)
                self.finds("rules", expected)
                (self.root / path).unlink()

    def test_format(self):
        self.write("brindle/one/bad.cpp", "// Bad.\nint   x ;\n")
        self.finds("format", "brindle/one/bad.cpp:2")

    def test_headers(self):
        self.write("cmake/public-headers.txt", "brindle/one/one.h\nbrindle/one/open.h\n")
        self.write("brindle/one/open.h", "// Open.\n#pragma once\n")
        rows = [("not alone", "brindle/two/bad.h", "std::string Text();\n", "brindle/two/bad.h"),
                ("public on private", "brindle/one/open.h", '#include "brindle/two/two.h"\n', "brindle/one/open.h"),
                ("twice", "brindle/two/bad.h", "int x = 1;\n", None)]
        for label, path, text, expected in rows:
            with self.subTest(label):
                self.write(path, "// Bad.\n#pragma once\n" + text)
                if expected:
                    self.finds("headers", f"{expected}: error: does not compile alone")
                else:
                    self.passes("headers")
                self.write(path, "// Good.\n#pragma once\n")

    def test_headers_of_the_desktop(self):
        text = "// A text of the desktop's.\n#pragma once\n\n#include <QtWidgets/QWidget>\n"
        self.write("apps/brindle-map/window.h", text)
        self.passes("headers")
        self.write("brindle/two/window.h", text)
        self.finds("headers", "brindle/two/window.h: error: does not compile alone")

    def test_gathering_header(self):
        self.write("cmake/public-headers.txt", "brindle/brindle.h\nbrindle/one/one.h\n")
        self.write("brindle/brindle.h", '// All.\n#pragma once\n\n#include "brindle/one/one.h"\n')
        self.passes("headers")
        self.write("brindle/one/other.h", "// Other.\n#pragma once\n")
        self.write("cmake/public-headers.txt", "brindle/brindle.h\nbrindle/one/one.h\nbrindle/one/other.h\n")
        self.finds("headers", "brindle/brindle.h: error: does not include brindle/one/other.h")


class BinaryCheckTest(unittest.TestCase):
    """The checks of a build, on a library made for the purpose."""

    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="check-"))
        self.addCleanup(shutil.rmtree, self.root)
        (self.root / "tools").mkdir()
        (self.root / "lib").mkdir()

    def build(self, *sources, libraries=()):
        """A library of one object for each source text."""
        (self.root / "libbrindle_objects.a").unlink(missing_ok=True)
        objects = []
        for number, code in enumerate(sources):
            (self.root / f"{number}.cpp").write_text(code)
            self.run_here("g++", "-std=c++20", "-fPIC", "-fvisibility=hidden", "-c", f"{number}.cpp")
            objects.append(f"{number}.o")
        self.run_here("ar", "rc", "libbrindle_objects.a", *objects)
        self.run_here("g++", "-shared", *objects, "-o", "lib/libbrindle.so", *libraries)

    def run_here(self, *command):
        subprocess.run(command, check=True, cwd=self.root)

    def check(self, name):
        run = subprocess.run([sys.executable, str(ROOT / "tools/check"), "--root", str(self.root), "--build",
                              str(self.root), name], capture_output=True, text=True, check=False)
        return run.returncode, run.stdout + run.stderr

    def test_exports(self):
        api = '__attribute__((visibility("default"))) '
        self.build(f"{api}int One(int a) {{ return a; }}\nint Hidden() {{ return 1; }}\n")
        self.assertIn("newly exported: One(int)", self.check("exports")[1])
        (self.root / "tools/exports.txt").write_text("One(int)\n")
        self.assertEqual(self.check("exports")[0], 0)
        self.assertNotIn("Hidden", self.check("exports")[1])
        (self.root / "tools/exports.txt").write_text("One(int)\nTwo(int)\n")
        code, output = self.check("exports")
        self.assertEqual(code, 1)
        self.assertIn("no longer exported: Two(int)", output)

    def test_exports_of_the_desktop_library(self):
        self.build('__attribute__((visibility("default"))) int One(int a) { return a; }\n')
        (self.root / "tools/exports.txt").write_text("One(int)\n")
        shutil.copy(self.root / "lib/libbrindle.so", self.root / "lib/libbrindle-qt.so")
        code, output = self.check("exports")
        self.assertEqual(code, 1)
        self.assertIn("tools/exports-qt.txt: error: newly exported: One(int)", output)
        (self.root / "tools/exports-qt.txt").write_text("One(int)\n")
        self.assertEqual(self.check("exports")[0], 0)

    def test_exports_want_key_functions(self):
        api = '__attribute__((visibility("default"))) '
        user = f"{api}C* Make%s() {{ return new C; }}\n"
        inline = f"struct {api}C {{ virtual ~C() {{}} }};\n" + user
        keyed = f"struct {api}C {{ virtual ~C(); }};\n" + user
        (self.root / "tools/exports.txt").write_text("C::~C()\nMakeA()\nMakeB()\nvtable for C\n")
        self.build(keyed % "A", keyed % "B" + "C::~C() {}\n")
        code, output = self.check("exports")
        self.assertEqual(code, 0, output)
        self.build(inline % "A", inline % "B")
        code, output = self.check("exports")
        self.assertEqual(code, 1)
        self.assertIn("vtable for C is made in several objects", output)

    def test_startup(self):
        rows = [("constant", "constinit int x = 3; int* Use() { return &x; }", None),
                ("never destroyed", "struct S { S(); ~S(); int x; }; S::S() {} S::~S() {}\n"
                                    "S& Use() { static S& s = *new S; return s; }", None),
                ("constructed", "int f(); int x = f(); int f() { return 1; }", "constructs something global"),
                ("destroyed", "struct S { ~S(); int x; }; S::~S() {} S& Use() { static S s; return s; }",
                 "destroys something when the process ends")]
        for label, code, expected in rows:
            with self.subTest(label):
                self.build(code)
                result, output = self.check("startup")
                self.assertEqual(result, 1 if expected else 0, output)
                self.assertIn(expected or "passed", output)

    def test_desktop(self):
        self.build("int One() { return 1; }")
        self.assertEqual(self.check("desktop")[0], 0)
        (self.root / "x.cpp").write_text("int X() { return 1; }")
        self.run_here("g++", "-shared", "-fPIC", "x.cpp", "-o", "lib/libX11.so.6", "-Wl,-soname,libX11.so.6")
        self.build("int One() { return 1; }",
                   libraries=["-Wl,--no-as-needed", "-Llib", "-l:libX11.so.6", "-Wl,-rpath,$ORIGIN"])
        code, output = self.check("desktop")
        self.assertEqual(code, 1)
        self.assertIn("needs libX11.so.6", output)
        self.assertIn("loads libX11.so.6", output)


class ForeignNameTest(unittest.TestCase):
    def test_the_name_decides_not_its_parameters_or_result(self):
        sys.path.insert(0, str(ROOT / "tools"))
        from checks.binary import is_foreign
        for name in ("std::vector<int>::push_back(int const&)", "void std::vector<a, b>::_M_realloc_insert<int>(int)",
                     "vtable for std::exception", "operator new(unsigned long)", "guard variable for std::x()::y",
                     "std::ostream& std::operator<< <std::char_traits<char> >(std::ostream&, char)"):
            self.assertTrue(is_foreign(name), name)
        for name in ("XMLWriter::EnterCopy(XMLReader const&, std::map<int, int> const&)", "typeinfo for XMLReader",
                     "CStringA::operator<(std::string const&)", "bool operator<<(std::ostream&, int)",
                     "brindle::Foo<std::less<int> >::Bar(int)", "std::string brindle::Made<int>(int)"):
            self.assertFalse(is_foreign(name), name)


class AcceptGoldenTest(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="check-"))
        self.addCleanup(shutil.rmtree, self.root)
        self.golden = self.root / "brindle/one/golden"
        self.golden.mkdir(parents=True)
        (self.golden / "a.xml").write_text("old\nsame\n")
        (self.golden / "a.xml.actual").write_text("new\nsame\n")
        (self.golden / "b.xml.actual").write_text("first\n")

    def accept(self, *arguments, answers=""):
        run = subprocess.run([sys.executable, str(ROOT / "tools/accept-golden"), "--root", str(self.root), "--no-run",
                              *arguments], input=answers, capture_output=True, text=True, check=False)
        return run.returncode, run.stdout

    def test_yes_takes_all(self):
        code, output = self.accept("--yes")
        self.assertEqual(code, 0)
        self.assertIn("-old\n+new\n same", output)
        self.assertIn("2 differences, 2 accepted", output)
        self.assertEqual((self.golden / "a.xml").read_text(), "new\nsame\n")
        self.assertEqual((self.golden / "b.xml").read_text(), "first\n")
        self.assertFalse(list(self.golden.glob("*.actual")))

    def test_answers_decide(self):
        code, output = self.accept(answers="n\ny\n")
        self.assertEqual(code, 1)
        self.assertIn("2 differences, 1 accepted", output)
        self.assertEqual((self.golden / "a.xml").read_text(), "old\nsame\n")
        self.assertTrue((self.golden / "b.xml").exists())

    def test_no_answer_is_no(self):
        self.assertEqual(self.accept()[0], 1)
        self.assertEqual((self.golden / "a.xml").read_text(), "old\nsame\n")


class TerminalPictureTest(unittest.TestCase):
    def test_draws_what_was_printed(self):
        try:
            for descriptor in os.openpty():
                os.close(descriptor)
        except OSError as error:
            self.skipTest(f"this machine gives no terminals: {error}")
        with tempfile.TemporaryDirectory(prefix="check-") as folder:
            picture = pathlib.Path(folder) / "p.svg"
            draw = lambda *command: subprocess.run([sys.executable, str(ROOT / "tools/terminal-picture"), "--lines",
                                                    "2", str(picture), *command], capture_output=True, check=False)
            run = draw("bash", "-c", r"printf '\033[32mgreen\033[0m <&\n'; sleep 0.1; echo two; echo three")
            self.assertEqual(run.returncode, 0, run.stderr)
            text = picture.read_text()
            self.assertIn('fill="#98c379" textLength="42.0">green</text>', text)
            self.assertIn("&lt;&amp;", text)
            self.assertIn("two</text>", text)
            self.assertIn("... and 1 more lines", text)
            self.assertEqual(draw("false").returncode, 1)


if __name__ == "__main__":
    unittest.main()
