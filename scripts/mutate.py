#!/usr/bin/env python3
"""Changes one operator, constant or condition of the module at a time and asks whether a test notices.

    scripts/mutate.py --count 200 --seed 1

Works on a copy of the tree, never on the tree itself. Each mutant is built and given to the module's
test programs, the quickest first, until one fails or takes too long. A mutant that does not compile
or that does not change the objects is drawn again. The survivors are listed; the exit status is 1
when fewer than --least percent were noticed.
"""

import argparse
import dataclasses
import filecmp
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
#: In the order in which they are asked: each is built only when the ones before saw nothing.
PROGRAMS = ("transcript_runner", "module_methods_test", "diagnostics_test")

SWAPS = {
    " < ": [" <= ", " > "], " <= ": [" < "], " > ": [" >= ", " < "], " >= ": [" > "],
    " == ": [" != "], " != ": [" == "], " && ": [" || "], " || ": [" && "],
    " + ": [" - "], " - ": [" + "], " * ": [" / "], " / ": [" * "],
    " += ": [" -= "], " -= ": [" += "], " |= ": [" &= "], " &= ": [" |= "],
    "++": ["--"], "--": ["++"],
}  # fmt: skip


#: A change may make a program ask for anything.
MEMORY = 4 << 30


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))


@dataclasses.dataclass(frozen=True)
class Mutant:
    path: str
    start: int
    end: int
    replacement: str

    def applied(self, text):
        return text[: self.start] + self.replacement + text[self.end :]

    def shown(self, text):
        number = text.count("\n", 0, self.start) + 1
        first, last = text.rfind("\n", 0, self.start) + 1, text.find("\n", self.start)
        line = text[first:last]
        column = self.start - first
        changed = line[:column] + self.replacement + line[column + self.end - self.start :]
        return f"{self.path}:{number}\n    {line.strip()}\n    {changed.strip()}"


def masked(text):
    """The text with comments, strings, characters and preprocessor lines blanked, same length."""
    pattern = re.compile(
        r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'|^[ \t]*#[^\n]*'
        r"|\btemplate <[^\n]*|\boperator\S+",
        re.S | re.M,
    )
    return pattern.sub(lambda found: re.sub(r"[^\n]", "\x00", found.group()), text)


def closing(code, opening):
    depth = 0
    for place in range(opening, len(code)):
        depth += {"(": 1, ")": -1}.get(code[place], 0)
        if depth == 0:
            return place
    return -1


def mutants_of(path, text):
    code = masked(text)
    for operator, others in SWAPS.items():
        for found in re.finditer(re.escape(operator), code):
            for other in others:
                yield Mutant(path, found.start(), found.end(), other)
    for found in re.finditer(r"\b(true|false)\b", code):
        yield Mutant(path, *found.span(), "false" if found.group() == "true" else "true")
    for found in re.finditer(r"(?<![\w.])(\d+\.\d+|\d+)(?![\w.])", code):
        yield Mutant(path, *found.span(), f"({found.group()} + 1)")
    for found in re.finditer(r"\bif (?:constexpr )?\(", code):
        opening = found.end() - 1
        end = closing(code, opening)
        if end > 0 and ";" not in code[opening:end]:
            yield Mutant(path, opening, end + 1, f"(!{text[opening:end + 1]})")


class Copy:
    """A copy of the tree with a build of its own."""

    def __init__(self, folder, jobs):
        self.tree = folder / "tree"
        self.build = folder / "build"
        self.jobs = str(jobs)
        self.copy_sources()
        self.adapt_build()
        self.run(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                  "-DCMAKE_CXX_FLAGS_RELEASE=-O0"]
                 + (["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"] if shutil.which("ld.lld") else []))
        self.cases = sorted(self.tree.glob("tests/transcripts/**/*.case"))

    def copy_sources(self):
        names = subprocess.check_output(
            ["git", "ls-files", "--cached", "--others", "--exclude-standard"], cwd=ROOT, text=True
        ).split("\n")
        listed = {name for name in names if name and (ROOT / name).is_file()}
        for old in [file for file in self.tree.rglob("*") if file.is_file() and not file.is_symlink()]:
            if str(old.relative_to(self.tree)) not in listed:
                old.unlink()
        for name in listed:
            target = self.tree / name
            if target.exists() and filecmp.cmp(ROOT / name, target, shallow=False):
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(ROOT / name, target)
        libraries = self.tree / "third_party" / "node_modules"
        if not libraries.exists():
            libraries.symlink_to((ROOT / "third_party" / "node_modules").resolve())

    def adapt_build(self):
        """Most of the time of a mutant would go into the standard library's headers and into asking
        whether files have come or gone."""
        for lists in self.tree.rglob("CMakeLists.txt"):
            lists.write_text(lists.read_text().replace(" CONFIGURE_DEPENDS", ""))
        headers = "algorithm array cmath cstring functional limits map memory optional set string utility vector"
        listed = " ".join(f"<{header}>" for header in headers.split())
        with open(self.tree / "tests" / "CMakeLists.txt", "a") as lists:
            lists.write(f"\ntarget_precompile_headers(module_checked PRIVATE {listed})\n")

    def run(self, command, **options):
        return subprocess.run([str(part) for part in command], check=True, capture_output=True, **options)

    def compiles(self, target):
        command = ["cmake", "--build", str(self.build), "-j", self.jobs, "--target", target]
        return subprocess.run(command, capture_output=True).returncode == 0

    def objects(self):
        """Each object of the module and of the test programs, and when it was made."""
        folders = [self.build / "tests" / "CMakeFiles" / "module_checked.dir"]
        folders += [self.build / "tests" / name for name in ("module", "diagnostics", "transcripts")]
        return {
            file: (file.read_bytes(), file.stat().st_mtime_ns)
            for folder in folders
            for file in folder.rglob("*.o")
        }

    def put_back(self, source, text, times, objects):
        """The source and the objects as they were, so that only the next mutant needs a compiler."""
        source.write_text(text)
        os.utime(source, ns=times)
        for file, (content, made) in objects.items():
            if not file.exists() or file.stat().st_mtime_ns != made:
                file.write_bytes(content)
                os.utime(file, ns=(made, made))

    def commands(self, program):
        binary = str(self.build / "bin" / program)
        if program != "transcript_runner":
            return [[binary, "--gtest_fail_fast", "--gtest_brief=1"]]
        return [[binary, str(case), str(case.with_suffix(".expected"))] for case in self.cases]

    def passes(self, program, seconds):
        """Whether every test of the program passes within that time."""
        end = time.monotonic() + seconds
        for command in self.commands(program):
            try:
                left = max(1.0, end - time.monotonic())
                done = subprocess.run(
                    command, cwd=self.build, capture_output=True, timeout=left, preexec_fn=limit_memory
                )
            except subprocess.TimeoutExpired:
                return False
            if done.returncode != 0:
                return False
        return True


class Hunt:
    def __init__(self, copy):
        self.copy = copy
        self.limits = {}
        for program in PROGRAMS:
            if not copy.compiles(program):
                sys.exit(f"{program} does not build without any change")
            start = time.monotonic()
            if not copy.passes(program, 3600):
                sys.exit(f"{program} fails without any change")
            self.limits[program] = 20 * (time.monotonic() - start) + 30
        self.objects = copy.objects()

    def outcome(self, mutant):
        """What became of a mutant: the program that noticed it, 'survivor', or None if it is none."""
        file = self.copy.tree / mutant.path
        original, status = file.read_text(), file.stat()
        file.write_text(mutant.applied(original))
        try:
            for position, program in enumerate(PROGRAMS):
                if not self.copy.compiles(program):
                    return None
                if position == 0 and not self.changes_objects():
                    return None
                if not self.copy.passes(program, self.limits[program]):
                    return program
            return "survivor"
        finally:
            self.copy.put_back(file, original, (status.st_atime_ns, status.st_mtime_ns), self.objects)

    def changes_objects(self):
        now = self.copy.objects()
        return any(now[file][0] != content for file, (content, _) in self.objects.items())


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--count", type=int, default=60, help="mutants to build and test")
    parser.add_argument("--seed", type=int, default=1, help="the same seed and tree give the same mutants")
    parser.add_argument("--least", type=float, default=95, help="percent that must be noticed")
    parser.add_argument("--under", default="module", help="folder whose sources are changed")
    parser.add_argument("--folder", default=ROOT / "build-mutate", type=pathlib.Path, help="of the copy")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="compilers at a time")
    options = parser.parse_args()

    copy = Copy(options.folder.resolve(), options.jobs)
    sources = sorted(
        file for ending in ("*.h", "*.cpp") for file in (copy.tree / options.under).rglob(ending)
    )
    texts = {str(file.relative_to(copy.tree)): file.read_text() for file in sources}
    candidates = [mutant for path, text in texts.items() for mutant in mutants_of(path, text)]
    random.Random(options.seed).shuffle(candidates)
    print(f"{len(candidates)} one-place changes of {len(texts)} files, seed {options.seed}", flush=True)

    hunt = Hunt(copy)
    survivors, noticed = [], dict.fromkeys(PROGRAMS, 0)
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    try:
        for mutant in candidates:
            tried = len(survivors) + sum(noticed.values())
            if tried == options.count:
                break
            outcome = hunt.outcome(mutant)
            if outcome in noticed:
                noticed[outcome] += 1
            elif outcome == "survivor":
                survivors.append(mutant)
                print(f"{tried + 1}: survives {mutant.shown(texts[mutant.path])}", flush=True)
    except KeyboardInterrupt:
        print("interrupted")
    total = len(survivors) + sum(noticed.values())
    share = 100 * sum(noticed.values()) / max(total, 1)
    print(f"{sum(noticed.values())} of {total} changes noticed ({share:.1f} %), by", noticed)
    return 0 if share >= options.least else 1


if __name__ == "__main__":
    sys.exit(main())
