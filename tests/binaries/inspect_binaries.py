#!/usr/bin/env python3
"""Inspects the Windows binaries of a build: what they export, import and bind lazily.

Usage: inspect_binaries.py DIST DEF     (the dist folder, the plug-in's export list)
"""
import os
import re
import struct
import sys
import unittest

DIST, DEF = sys.argv[1:3]
COMPANIONS = ["klibjpg.dll", "kExifLib.dll", "kFioUtil.dll", "k32Comm.dll", "K32MISC.dll"]
SYSTEM = {"kernel32.dll", "user32.dll", "gdi32.dll", "msvcrt.dll", "advapi32.dll", "shell32.dll",
          "comctl32.dll", "comdlg32.dll", "ole32.dll", "shlwapi.dll"}


class Image:
    """The parts of a PE32+ file that tell what a module needs and gives."""

    def __init__(self, path):
        with open(path, "rb") as file:
            self.data = file.read()
        pe = struct.unpack_from("<I", self.data, 0x3C)[0]
        assert self.data[pe:pe + 4] == b"PE\0\0", path
        machine, count, _, _, _, size = struct.unpack_from("<HHIIIH", self.data, pe + 4)
        assert machine == 0x8664, "not x86-64"
        optional = pe + 24
        self.directories = [struct.unpack_from("<II", self.data, optional + 112 + 8 * i)
                            for i in range(16)]
        self.sections = [struct.unpack_from("<IIII", self.data, optional + size + 40 * i + 8)
                         for i in range(count)]

    def offset(self, rva):
        for size, start, raw_size, raw in self.sections:
            if start <= rva < start + max(size, raw_size):
                return raw + rva - start
        raise ValueError(f"address {rva:#x} lies in no section")

    def text(self, rva):
        start = self.offset(rva)
        return self.data[start:self.data.index(b"\0", start)].decode("ascii")

    def words(self, rva, form):
        return struct.unpack_from(form, self.data, self.offset(rva))

    def imports(self):
        names, rva = [], self.directories[1][0]
        while rva:
            name = self.words(rva, "<5I")[3]
            if name == 0:
                break
            names.append(self.text(name))
            rva += 20
        return names

    def delayed(self):
        names, rva = [], self.directories[13][0]
        while rva:
            attributes, name = self.words(rva, "<2I")
            if name == 0:
                break
            assert attributes == 1
            names.append(self.text(name))
            rva += 32
        return names

    def exports(self):
        """(ordinal, name) pairs; the name of an ordinal without one is None."""
        rva = self.directories[0][0]
        if rva == 0:
            return set()
        base, functions, names = self.words(rva + 16, "<3I")
        addresses, name_table, ordinal_table = self.words(rva + 28, "<3I")
        named = {}
        for index in range(names):
            ordinal = self.words(ordinal_table + 2 * index, "<H")[0]
            named[ordinal] = self.text(self.words(name_table + 4 * index, "<I")[0])
        return {(base + i, named.get(i)) for i in range(functions)
                if self.words(addresses + 4 * i, "<I")[0] != 0}


def binaries():
    for folder, _, files in os.walk(DIST):
        for file in files:
            if file.lower().endswith((".exe", ".dll", ".fio")):
                yield os.path.join(folder, file)


class Binaries(unittest.TestCase):
    def test_the_layout_is_complete(self):
        expected = {"fiohost.exe", "KFRES.DLL", "fio/K32JPG.FIO"} | {f"fio/{c}" for c in COMPANIONS}
        found = {os.path.relpath(path, DIST).replace(os.sep, "/") for path in binaries()}
        self.assertEqual(found, expected)

    def test_the_plug_in_exports_its_table_and_nothing_else(self):
        with open(DEF, encoding="ascii") as file:
            table = {(int(ordinal), name)
                     for name, ordinal in re.findall(r"^(\w+) @(\d+)", file.read(), re.M)}
        self.assertEqual(Image(os.path.join(DIST, "fio", "K32JPG.FIO")).exports(), table)

    def test_the_dialog_start_has_an_ordinal_and_no_name(self):
        self.assertEqual(Image(os.path.join(DIST, "fio", "K32MISC.dll")).exports(), {(20, None)})

    def test_the_program_asks_for_sharp_windows_and_long_paths(self):
        with open(os.path.join(DIST, "fiohost.exe"), "rb") as file:
            content = file.read()
        for wish in (b">PerMonitorV2, PerMonitor</dpiAwareness>", b">true</longPathAware>"):
            self.assertIn(wish, content)

    def test_only_system_libraries_are_imported(self):
        for path in binaries():
            imported = {name.lower() for name in Image(path).imports()}
            self.assertLessEqual(imported, SYSTEM, path)

    def test_the_companions_are_bound_lazily(self):
        delayed = Image(os.path.join(DIST, "fio", "K32JPG.FIO")).delayed()
        self.assertEqual(sorted(delayed), sorted(COMPANIONS))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
