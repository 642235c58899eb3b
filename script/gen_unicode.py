#!/usr/bin/env python3
"""Writes the tables of source/qv/unicode/gen from the files of the Unicode Character Database 16.0.

usage: script/gen_unicode.py UCD-FOLDER [OUTPUT-FOLDER]

The folder holds UnicodeData.txt, CaseFolding.txt, SpecialCasing.txt, Scripts.txt, PropList.txt and
CompositionExclusions.txt. The output folder is source/qv/unicode/gen unless given.
"""
import pathlib
import re
import sys

VERSION = "16.0"
LIMIT = 0x110000
HANGUL = range(0xAC00, 0xAC00 + 11172)
FORM_C, FORM_KC, FORM_D, FORM_KD = range(4)
FLAG_MARK, FLAG_BACKWARD, FLAG_CANONICAL, FLAG_COMPAT = 16, 32, 64, 128
DIRECT = 0x600  # code points below have their case mappings in a directly indexed table too
MANY = 0xFFFF   # in that table: not one character of 16 bits

CATEGORIES = "Cn Lu Ll Lt Lm Lo Mn Mc Me Nd Nl No Pc Pd Ps Pe Pi Pf Po Sm Sc Sk So Zs Zl Zp Cc Cf Cs Co".split()
TYPES = ("none canonical font noBreak initial medial final isolated circle super sub vertical wide narrow small square "
         "fraction compat").split()


def rows(path):
    for line in path.read_text(encoding="utf-8").splitlines():
        line = line.split("#")[0].strip()
        if line:
            yield [field.strip() for field in line.split(";")]


def code_range(field):
    first, _, last = field.partition("..")
    return range(int(first, 16), int(last or first, 16) + 1)


def sequence(field):
    return tuple(int(code, 16) for code in field.split())


class Database:
    """The facts of the input files, by code point."""

    def __init__(self, folder, script_values):
        self.category = [0] * LIMIT
        self.ccc = [0] * LIMIT
        self.script = [0] * LIMIT
        self.decimal = [-1] * LIMIT
        self.step = {}  # code point: (type, characters)
        self.upper, self.lower, self.fold = {}, {}, {}
        self.read_main(folder / "UnicodeData.txt")
        for code, lower, _title, upper, *condition in rows(folder / "SpecialCasing.txt"):
            if len(condition) < 2:  # the last field is empty; a condition comes before it
                self.lower[int(code, 16)] = sequence(lower)
                self.upper[int(code, 16)] = sequence(upper)
        for code, status, mapping, *_ in rows(folder / "CaseFolding.txt"):
            if status in "CF":
                self.fold[int(code, 16)] = sequence(mapping)
        for mapping in (self.upper, self.lower, self.fold):
            for code in [code for code, target in mapping.items() if target == (code,)]:
                del mapping[code]
        for codes, name in rows(folder / "Scripts.txt"):
            for code in code_range(codes):
                self.script[code] = script_values[name.upper()]
        self.white = sorted(code for codes, name in rows(folder / "PropList.txt") if name == "White_Space"
                            for code in code_range(codes))
        self.excluded = {int(fields[0], 16) for fields in rows(folder / "CompositionExclusions.txt")}

    def read_main(self, path):
        first = 0
        for fields in rows(path):
            code = int(fields[0], 16)
            if fields[1].endswith("First>"):
                first = code
                continue
            for each in range(first if fields[1].endswith("Last>") else code, code + 1):
                self.category[each] = CATEGORIES.index(fields[2])
                self.ccc[each] = int(fields[3])
            if fields[2] == "Nd":
                self.decimal[code] = int(fields[6])
            if fields[5]:
                kind, _, target = fields[5].rpartition("> ")
                self.step[code] = (TYPES.index(kind[1:]) if kind else 1, sequence(target))
            if fields[12]:
                self.upper[code] = sequence(fields[12])
            if fields[13]:
                self.lower[code] = sequence(fields[13])


class Forms:
    """Normalization, as the annex defines it."""

    def __init__(self, data):
        self.data = data
        self.pairs = {}
        for code, (kind, target) in data.step.items():
            if kind == 1 and len(target) == 2 and code not in data.excluded \
                    and data.ccc[code] == 0 and data.ccc[target[0]] == 0:
                self.pairs[target] = code

    def expand(self, code, compat):
        if code in HANGUL:
            index = code - HANGUL.start
            tail = [0x11A7 + index % 28] if index % 28 else []
            return [0x1100 + index // 588, 0x1161 + index % 588 // 28] + tail
        kind, target = self.data.step.get(code, (0, ()))
        if kind == 1 or (kind and compat):
            return [part for each in target for part in self.expand(each, compat)]
        return [code]

    def ordered(self, chars):
        chars = list(chars)
        ccc = self.data.ccc
        begin = 0
        for end in range(len(chars) + 1):
            if end == len(chars) or ccc[chars[end]] == 0:
                chars[begin:end] = sorted(chars[begin:end], key=ccc.__getitem__)
                begin = end + 1
        return chars

    def join(self, first, second):
        if 0x1100 <= first <= 0x1112 and 0x1161 <= second <= 0x1175:
            return 0xAC00 + ((first - 0x1100) * 21 + second - 0x1161) * 28
        if first in HANGUL and (first - 0xAC00) % 28 == 0 and 0x11A8 <= second <= 0x11C2:
            return first + second - 0x11A7
        return self.pairs.get((first, second))

    def composed(self, chars):
        result, starter, last = [], None, 0
        for char in chars:
            ccc = self.data.ccc[char]
            joined = None
            if starter is not None and (last == 0 or last < ccc):
                joined = self.join(result[starter], char)
            if joined is not None:
                result[starter] = joined
                continue
            if ccc == 0:
                starter, last = len(result), 0
            else:
                last = ccc
            result.append(char)
        return result

    def flags(self):
        """Bit n: the code point is a starter that form n leaves alone whatever stands around it."""
        backward = {second for _, second in self.pairs} | set(range(0x1161, 0x1176)) | set(range(0x11A8, 0x11C3))
        result = [0] * LIMIT
        for code in range(LIMIT):
            if 0xD800 <= code <= 0xDFFF:
                continue
            ccc, flags = self.data.ccc[code], 0
            for compat in (False, True):
                if code not in self.data.step and code not in HANGUL:
                    chars, back = [code], [code]
                else:
                    chars = self.ordered(self.expand(code, compat))
                    back = self.composed(chars)
                starts = ccc == 0 and self.data.ccc[chars[0]] == 0
                if starts and back == [code] and code not in backward and chars[0] not in backward:
                    flags |= 1 << (FORM_KC if compat else FORM_C)
                if starts and chars == [code]:
                    flags |= 1 << (FORM_KD if compat else FORM_D)
            kind = self.data.step.get(code, (0,))[0]
            flags |= (FLAG_MARK if ccc else 0) | (FLAG_BACKWARD if code in backward else 0)
            flags |= FLAG_CANONICAL if kind == 1 else FLAG_COMPAT if kind else 0
            result[code] = flags
        return result


class Pool:
    """Arrays of characters, laid into one; an array that stands in it already isn't added."""

    def __init__(self):
        self.text = ""

    def add_all(self, sequences):
        for each in sorted(set(sequences), key=lambda chars: (-len(chars), chars)):
            text = "".join(map(chr, each))
            if text not in self.text:
                self.text += text

    def offset(self, chars):
        return self.text.index("".join(map(chr, chars)))

    def values(self):
        return list(map(ord, self.text))


class Output:
    """Collects one generated source file and what the header says about it."""

    def __init__(self):
        self.declarations, self.source = [], []

    def array(self, kind, name, values, text=str):
        self.declarations.append(f"extern const {kind} {name}[{len(values)}];")
        lines, line = [], "   "
        for value in values:
            word = f" {text(value)},"
            if len(line) + len(word) > 110:
                lines.append(line)
                line = "   "
            line += word
        self.source.append("\n".join([f"const {kind} {name}[{len(values)}] = {{"] + lines + [line, "};", ""]))

    def constant(self, name, value):
        self.declarations.append(f"inline constexpr QV_CHAR {name} = {value};")

    def stages(self, name, values):
        """Two stages: the block of a code point, and the value in the block."""
        def kind_of(numbers):
            if min(numbers) < 0:
                return "int8_t", 1
            return ("uint8_t", 1) if max(numbers) < 256 else ("uint16_t", 2)

        best = None
        for shift in range(4, 10):
            blocks, index = {}, []
            for begin in range(0, LIMIT, 1 << shift):
                block = tuple(values[begin:begin + (1 << shift)])
                index.append(blocks.setdefault(block, len(blocks)))
            second = [value for block in blocks for value in block]
            size = len(index) * kind_of(index)[1] + len(second) * kind_of(second)[1]
            if best is None or size < best[0]:
                best = size, shift, index, second
        _, shift, index, second = best
        self.constant(f"{name}Shift", shift)
        self.array(kind_of(index)[0], f"{name}Blocks", index)
        self.array(kind_of(second)[0], f"{name}Values", second)


def case_tables(out, data):
    pool = Pool()
    maps = (("upper", data.upper), ("lower", data.lower), ("fold", data.fold))
    for _, mapping in maps:
        pool.add_all(mapping.values())
    for name, mapping in maps:
        values = [0] * LIMIT
        for code, target in mapping.items():
            values[code] = len(target) << 14 | pool.offset(target)
        assert max(values) < 0x10000 and len(pool.text) < 1 << 14
        out.stages(name, values)
        direct = [mapping.get(code, (code,)) for code in range(DIRECT)]
        out.array("uint16_t", f"{name}Direct", [each[0] if len(each) == 1 and each[0] < MANY else MANY for each in direct])
    out.array("QV_CHAR", "casePool", pool.values(), hex)


def decomposition_tables(out, data, forms):
    pool, records, numbers = Pool(), [(0,) * 9], [0] * LIMIT
    full = {code: tuple(tuple(forms.ordered(forms.expand(code, compat))) for compat in (False, True)) for code in data.step}

    def tail(chars):
        """How many characters stand from the last starter on, 0 if the first isn't one."""
        starters = [index for index, char in enumerate(chars) if data.ccc[char] == 0]
        return len(chars) - starters[-1] if starters and starters[0] == 0 else 0

    pool.add_all([target for _, target in data.step.values()] + [chars for pair in full.values() for chars in pair])
    for code, (kind, target) in sorted(data.step.items()):
        canonical, compat = full[code]
        assert len(compat) <= 18
        numbers[code] = len(records)
        records.append((pool.offset(target), pool.offset(canonical), pool.offset(compat),
                        len(target), kind, len(canonical), tail(canonical), len(compat), tail(compat)))
    out.stages("decomposition", numbers)
    out.array("Decomposition", "decompositions", records, lambda record: "{ %s }" % ", ".join(map(str, record)))
    out.array("QV_CHAR", "decompositionPool", pool.values(), hex)


def composition_tables(out, forms):
    """A perfect hash: the pair's hash names a bucket, the bucket's displacement the one slot where the pair can be."""
    slots, buckets = 1024, 256
    second_factor = 0x85EBCA6B
    while True:
        groups = {}
        for first, second in forms.pairs:
            number = (first * 0x9E3779B1 + second * second_factor) & 0xFFFFFFFF
            groups.setdefault(number >> 24, []).append((number >> 8 & slots - 1, first, second))
        table, moves = place(groups, slots, buckets)
        if table:
            break
        second_factor = (second_factor + 2) & 0xFFFFFFFF
    out.constant("compositionSecondFactor", hex(second_factor) + "u")
    out.array("uint16_t", "compositionMoves", moves)
    out.array("Composition", "compositions",
              [(*pair, forms.pairs[pair]) if pair else (0, 0, 0) for pair in table],
              lambda record: "{ %s }" % ", ".join(map(hex, record)))


def place(groups, slots, buckets):
    table, moves = [None] * slots, [0] * buckets
    for bucket, group in sorted(groups.items(), key=lambda item: (-len(item[1]), item[0])):
        for move in range(slots):
            wanted = {(number + move) % slots for number, _, _ in group}
            if len(wanted) == len(group) and all(table[slot] is None for slot in wanted):
                break
        else:
            return None, None
        moves[bucket] = move
        for number, first, second in group:
            table[(number + move) % slots] = first, second
    return table, moves


def script_values(header):
    """The values of the scripts are the library's own; its header has them."""
    found = re.findall(r"^#define QV_UNICODE_SCRIPT_(\w+) +(\d+)$", header.read_text(), re.M)
    return {name: int(value) for name, value in found}


def write(folder, name, inputs, out):
    head = [f"// Generated by script/gen_unicode.py from {', '.join(inputs)} of the Unicode Character Database", f"// {VERSION}. Don't edit.",
            "", "#include <qv/unicode/gen/qv_unicode_tables.hh>", "", "// clang-format off", "",
            "namespace qv::unicode", "{", ""]
    (folder / name).write_text("\n".join(head + out.source + ["} // namespace qv::unicode", ""]))


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    source = pathlib.Path(__file__).resolve().parent.parent / "source/qv/unicode"
    folder = pathlib.Path(sys.argv[2]) if len(sys.argv) == 3 else source / "gen"
    folder.mkdir(parents=True, exist_ok=True)
    data = Database(pathlib.Path(sys.argv[1]), script_values(source / "qv_unicode_script.h"))
    forms = Forms(data)
    flags = forms.flags()

    properties, cases, normal = Output(), Output(), Output()
    properties.stages("category", data.category)
    properties.stages("combiningClass", data.ccc)
    properties.stages("script", data.script)
    properties.stages("decimal", data.decimal)
    assert data.white == [*range(9, 14), 32, 133, 160, 5760, *range(8192, 8203), 8232, 8233, 8239, 8287, 12288]
    cases.constant("caseDirectLimit", hex(DIRECT))
    cases.constant("caseDirectMany", hex(MANY))
    case_tables(cases, data)
    normal.stages("normalFlags", flags)
    bounds = [next(code for code in range(LIMIT) if not flags[code] >> form & 1) for form in range(4)]
    normal.array("QV_CHAR", "normalBounds", bounds, hex)
    decomposition_tables(normal, data, forms)
    composition_tables(normal, forms)

    write(folder, "qv_unicode_property_tables.cc", ["UnicodeData.txt", "Scripts.txt"], properties)
    write(folder, "qv_unicode_case_tables.cc", ["UnicodeData.txt", "SpecialCasing.txt", "CaseFolding.txt"], cases)
    write(folder, "qv_unicode_normal_tables.cc", ["UnicodeData.txt", "CompositionExclusions.txt"], normal)
    template = (pathlib.Path(__file__).resolve().parent / "gen_unicode_tables.hh.in").read_text()
    lines = [line for out in (properties, cases, normal) for line in out.declarations]
    (folder / "qv_unicode_tables.hh").write_text(template.replace("@VERSION@", VERSION).replace("@TABLES@", "\n".join(lines)))


main()
