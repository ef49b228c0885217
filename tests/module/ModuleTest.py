"""What the shared libraries hold and show, read from their symbols with readelf.

    ModuleTest.py --readelf PROGRAM trovan=libtrovan.so corvel=libcorvel.so ...
"""

import re
import subprocess
import sys
import unittest
from collections import namedtuple

Symbol = namedtuple("Symbol", "value size kind binding visibility section name")
Section = namedtuple("Section", "name address size flags alignment")

# What each library may export besides its own namespace.
EXTRA_EXPORTS = {
    "corvel": r"|N3gsl9fail_fastE|N3gsl9fail_fast",
    # Names of the Windows interface are global.
    "win32": r"|6GetACPv|16GetTempFileNameW",
}
# The C run-time's own marks in each module.
RUN_TIME_DATA = {"completed.0", "__dso_handle", "__TMC_END__"}
MODULE_HANDLE = "_ZN12_GLOBAL__N_18g_moduleE"

# Written once by the loader, or by it alone.
LOADERS_SECTIONS = {".dynamic", ".got", ".got.plt", ".init_array", ".fini_array", ".data.rel.ro",
                    ".tm_clone_table"}

readelf = "readelf"
libraries = {}


def Run(*arguments):
    return subprocess.run([readelf, "--wide", *arguments], check=True, capture_output=True,
                          text=True).stdout


def Symbols(library, table):
    """The symbols of the table, --syms or --dyn-syms; those of files and sections left out."""
    row = re.compile(r"^\s*\d+: ([0-9a-f]+)\s+(\w+) (\w+)\s+(\w+)\s+(\w+)\s+(\w+) ([^\s@]+)")
    seen = set()
    for line in Run(table, libraries[library]).splitlines():
        match = row.match(line)
        if match:
            value, size, kind, binding, visibility, section, name = match.groups()
            if kind not in ("FILE", "SECTION"):
                seen.add(Symbol(int(value, 16), int(size, 0), kind, binding, visibility, section,
                                name))
    return sorted(seen)


def Sections(library):
    """The sections by their index, as symbols name it."""
    row = re.compile(r"^\s*\[\s*(\d+)\] (\S+)\s+\S+\s+([0-9a-f]+) [0-9a-f]+ ([0-9a-f]+) \w+"
                     r"\s+([A-Za-z]*)\s+\d+\s+\d+\s+(\d+)$")
    sections = {}
    for line in Run("--sections", libraries[library]).splitlines():
        match = row.match(line)
        if match:
            index, name, address, size, flags, alignment = match.groups()
            sections[index] = Section(name, int(address, 16), int(size, 16), flags, int(alignment))
    return sections


def WritableSections(library):
    return {index: section for index, section in Sections(library).items()
            if "W" in section.flags and "A" in section.flags
            and section.name not in LOADERS_SECTIONS}


class TrovanModule(unittest.TestCase):
    def setUp(self):
        self.sections = WritableSections("trovan")
        self.writable = [s for s in Symbols("trovan", "--syms") if s.section in self.sections]

    def testItsOnlyWritableGlobalIsTheModuleHandle(self):
        own = {s.name for s in self.writable
               if s.name not in RUN_TIME_DATA and not s.name.startswith("DW.ref.")}
        self.assertEqual(own, {MODULE_HANDLE})

    def testNoWritableByteIsWithoutAName(self):
        for index, section in self.sections.items():
            # Distinct places: several names may stand for one.
            sizes = {s.value: s.size for s in self.writable if s.section == index}
            # __dso_handle is a word, though its symbol states no size.
            named = sum(-(-max(size, 1) // section.alignment) * section.alignment
                        for size in sizes.values())
            self.assertLessEqual(section.size, named, section.name)

    def testStartsNoThreadAndReadsNoEnvironment(self):
        forbidden = re.compile(
            r"(secure_)?getenv|__secure_getenv|setenv|putenv|unsetenv|clearenv|_*environ"
            r"|pthread_create|thrd_create|_ZNSt6thread\w*|fork|vfork|clone|posix_spawnp?")
        undefined = {s.name for s in Symbols("trovan", "--dyn-syms") if s.section == "UND"}
        self.assertIn("_Znwm", undefined, "symbols were not read")
        self.assertEqual({name for name in undefined if forbidden.fullmatch(name)}, set())


def IsSharedInstance(symbol):
    """What the compiler makes of the standard library's templates: weak, alike in every module."""
    return (symbol.binding in ("WEAK", "UNIQUE")
            and re.match(r"_Z(T[ISV])?Z?(NK?)?(St|9__gnu_cxx)", symbol.name))


class Exports(unittest.TestCase):
    def testEachLibraryShowsItsOwnNamespaceOnly(self):
        for library in libraries:
            with self.subTest(library=library):
                shown = {s.name for s in Symbols(library, "--dyn-syms")
                         if s.section != "UND" and not IsSharedInstance(s)}
                # Functions and variables; type records, tables and thunks of classes.
                space = f"{len(library)}{library}"
                own = re.compile(rf"_Z(T[ISVTC]|Th\d+_|Tv\d+_n\d+_)?"
                                 rf"(NK?{space}\w*{EXTRA_EXPORTS.get(library, '')}\w*)")
                self.assertTrue(shown, "symbols were not read")
                self.assertEqual({name for name in shown if not own.fullmatch(name)}, set())


if __name__ == "__main__":
    arguments = sys.argv[1:]
    readelf = arguments[arguments.index("--readelf") + 1]
    libraries = dict(a.split("=", 1) for a in arguments if "=" in a)
    unittest.main(argv=sys.argv[:1])
