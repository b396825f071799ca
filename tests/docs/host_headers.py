"""What host/*.h declares: packed records with their offsets, numbers, and calls."""
import re
from pathlib import Path

SIZES = {"u8": 1, "char": 1, "u16": 2, "u32": 4, "i32": 4, "u64": 8, "i64": 8, "HANDLE": 8, "HGLOBAL": 8,
         "HMODULE": 8, "HWND": 8, "DLGPROC": 8, "double": 8}


def without_comments(text):
    return re.sub(r"//[^\n]*", "", text)


class Headers:
    def __init__(self, folder):
        self.texts = {path.name: path.read_text() for path in sorted(Path(folder).glob("*.h"))}
        code = "\n".join(without_comments(text) for text in self.texts.values())
        self.numbers = self._numbers(code)
        self.records = {}
        bodies = dict(re.findall(r"struct (\w+) \{\n(.*?)\n\};", code, re.S))
        pending = dict(bodies)
        while pending:  # a record may hold another that is declared in a later header
            known = [name for name in pending if self._is_known(pending[name], bodies)]
            if not known:
                raise SystemExit(f"records of unknown parts: {', '.join(pending)}")
            for name in known:
                self.records[name] = self._record(pending.pop(name))
        self.entries = dict(re.findall(r"using (\w+Entry|\w+Callback|RowSource|\w+Function) =\s*([^;]+);", code))
        self.calls = {
            name: (library, result.strip(), arguments)
            for library, result, name, arguments in re.findall(
                r'COMPANION_CALL\("([^"]+)", ([^,]+), (\w+),\s*\(((?:[^()]|\([^()]*\))*)\)\)', code)}

    def _numbers(self, code):
        found = {}
        for body in re.findall(r"enum \w+ : \w+ \{(.*?)\};", code, re.S):
            found.update(self._values(body.split(",")))
        found.update(self._values(re.findall(r"inline constexpr \w+ ([^;{]+= [^;]+);", code)))
        return found

    @staticmethod
    def _values(items):
        values = {}
        for item in items:
            match = re.match(r"\s*(\w+)\s*=\s*(.+?)\s*$", item, re.S)
            if match and re.fullmatch(r"-?(0x[0-9A-Fa-f]+|\d+)", match[2]):
                values[match[1]] = int(match[2], 0)
        return values

    def _is_known(self, body, bodies):
        types = {member.split()[-2] if "*" not in member else "pointer" for member in self._members(body)}
        return all(t in SIZES or t == "pointer" or t in self.records for t in types if t in SIZES or t in bodies)

    @staticmethod
    def _members(body):
        return [" ".join(member.split()) for member in body.split(";") if member.strip()]

    def _record(self, body):
        offset, fields = 0, []
        for member in self._members(body):
            match = re.match(r"(?:const )?(.+?)\s*(\*?)\s*(\w+)(?:\[(\w+)\])?(?: = .*)?$", member)
            kind, pointer, name, count = match.groups()
            kind = kind.strip()
            if pointer or kind.endswith("*"):
                size, kind = 8, "pointer"
            elif kind in SIZES:
                size = SIZES[kind]
            else:
                size = self.records[kind][1]
            amount = 1
            if count:
                amount = int(count) if count.isdigit() else self.numbers[count]
                kind = f"{kind}[{amount}]"
            if not name.startswith("gap"):
                fields.append((offset, kind, name))
            offset += size * amount
        return fields, offset
