#!/usr/bin/env python3
"""What the tests are worth: breaks one place of the sources at a time and tells which breaks no test notices.

    tools/mutate.py --room config                     30 places of src/config, all tests that are linked with it
    tools/mutate.py --room config --programs test_config    what the room's own tests notice alone
    tools/mutate.py --file src/config/rows.cpp --count 0    every break of one file
    tools/mutate.py --room link,acquire --seed 7 --list     the drawn breaks as a diff, nothing is run

The same --room, --count and --seed on the same sources draw the same breaks. The checkout is only read: a copy of it
is kept in --scratch, where the first run builds everything and later ones what has changed. The tests run with their
home, settings and temporary folders inside the copy, at low priority.

A break that does not compile or leaves the object file as it was is none, and the next one drawn takes its place. A test
program that fails, crashes or hangs notices it. Places are drawn from the .cpp files of a room, not from headers and main().

Exit status: 0 every break was noticed, 1 some were not, 2 the tree does not build or its tests fail as it is.
"""
import argparse
import fcntl
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from typing import NamedTuple

# ------------------------------------------------------------------------------------------------ what can be broken


class Break(NamedTuple):
    file: str  # below the checkout
    line: int
    kind: str
    start: int  # in the text of the file
    end: int
    new: str


SWAPS = {
    "comparison": {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="},
    "logic": {"&&": "||", "||": "&&"},
    "arithmetic": {"+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "+=": "-=", "-=": "+="},
}
NO_CALL = re.compile(r"(return|using|namespace|struct|class|enum|template|typedef|friend|static_assert|case|default|public|"
                     r"private|protected|extern|throw|goto|co_)\b")
CALL_OR_ASSIGNMENT = re.compile(r"(\+\+|--)?[\w.:\[\]()*&>-]+( [-+*/|&^%]?= .*|\(.*\)|\+\+|--);$|(break|continue);$")
FUNCTION_HEAD = re.compile(r"(?m)^(?!namespace|struct|class|enum|extern|union)(\w[^;{}=]*)\)( const)?( noexcept)?( override)? \{$")
LITERAL = re.compile(r"""//[^\n]*|/\*.*?\*/|R"([^(\s]*)\(.*?\)\1"|"(?:\\.|[^"\\])*"|(?<![0-9a-fA-F])'(?:\\.|[^'\\])+'""", re.S)


def code_of(text):
    """The text with comments as blanks and literals as \\1, place for place."""
    return LITERAL.sub(lambda hit: re.sub(r"[^\n]", " " if hit[0][0] == "/" else "\1", hit[0]), text)


def closing(text, opening):
    depth = 0
    for place in range(opening, len(text)):
        depth += {"(": 1, ")": -1}.get(text[place], 0)
        if depth == 0:
            return place
    return -1


def breaks_of(file, text):
    code = code_of(text)
    found = []

    def add(kind, start, end, new):
        found.append(Break(file, text.count("\n", 0, start) + 1, kind, start, end, new))

    for kind, swaps in SWAPS.items():
        for hit in re.finditer(r"(?<= )(" + "|".join(map(re.escape, sorted(swaps, key=len, reverse=True))) + r")(?=\s)", code):
            add(kind, hit.start(), hit.end(), swaps[hit[1]])
    for hit in re.finditer(r"(?<![\w.'])(\d+)(?![\w.'])", code):
        if "template" in code[code.rfind("\n", 0, hit.start()) + 1:hit.start()]:
            continue
        for value in {int(hit[1]) + 1, max(int(hit[1]) - 1, 0)} - {int(hit[1])}:
            add("constant", hit.start(), hit.end(), str(value))
    for hit in re.finditer(r"\b(true|false)\b", code):
        add("boolean", hit.start(), hit.end(), "false" if hit[1] == "true" else "true")
    for hit in re.finditer(r"\b(?:if|while) (\()", code):
        end = closing(code, hit.start(1)) + 1
        if end > 0 and ";" not in code[hit.start(1):end]:
            add("negate", hit.start(1), end, "(!" + text[hit.start(1):end] + ")")
    for hit in re.finditer(r"(?<=[( ])!(?=[\w(])", code):
        add("negate", hit.start(), hit.end(), "")
    for hit in re.finditer(r"\breturn ([^;{}]+);", code):
        add("return", hit.start(), hit.end(), "return {};")
    for hit in FUNCTION_HEAD.finditer(code):
        add("return early", hit.end(), hit.end(), " return;" if hit[1].startswith("void ") else " return {};")
    place, before = 0, ""
    for line in code.split("\n"):
        statement = line.strip().replace("\1", "0")
        body = re.sub(r"^(?:else )?if \(.*\) (?=[\w*+-])|^else ", "", statement)
        goes_on = body == statement and before and before[-1] not in ";{}:)" and not before.endswith("else")
        if not goes_on and CALL_OR_ASSIGNMENT.match(body) and not NO_CALL.match(body):
            start = place + line.index(line.strip()) + statement.rfind(body)
            add("delete", start, start + len(body), ";")
        place += len(line) + 1
        before = statement or before
    preprocessor = {number for number, line in enumerate(code.split("\n"), 1) if line.startswith("#")}
    return [one for one in found if one.line not in preprocessor]


def draw(checkout, files, count, seed):
    """Lines are drawn evenly, then one of the breaks of each; in file order and all of them when `count` is 0."""
    of_line = {}
    for file in files:
        for one in breaks_of(file, (checkout / file).read_text()):
            of_line.setdefault((file, one.line), []).append(one)
    lines = sorted(of_line)
    if count == 0:
        return [one for line in lines for one in of_line[line]]
    dice = random.Random(seed)
    dice.shuffle(lines)
    return [dice.choice(of_line[line]) for line in lines]


def diff_of(checkout, one):
    text = (checkout / one.file).read_text()
    first, last = text.rfind("\n", 0, one.start) + 1, text.find("\n", one.end)
    broken = text[first:one.start] + one.new + text[one.end:last]
    return (f"{one.file}:{one.line} {one.kind}\n    - " + text[first:last].strip().replace("\n", "\n      ") +
            "\n    + " + broken.strip().replace("\n", "\n      "))


# ------------------------------------------------------------------------------------------------ the copy


class Tree:
    """The copy of the checkout and its build."""

    def __init__(self, checkout, scratch, jobs):
        self.checkout, self.root, self.home, self.jobs = checkout, scratch / "tree", scratch / "home", jobs
        self.build = self.root / "build" / "mutants"
        ccache = os.environ.get("CCACHE_DIR", os.path.expanduser("~/.cache/ccache"))
        self.env = {**os.environ, "QT_QPA_PLATFORM": "offscreen", "HOME": str(self.home), "CCACHE_DIR": ccache,
                    "TMPDIR": str(self.home / "tmp"), "XDG_CONFIG_HOME": str(self.home / "config"),
                    "XDG_RUNTIME_DIR": str(self.home / "run")}
        self.refresh()

    def refresh(self):
        """What differs is copied with a new time, so that it is built again."""
        listed = subprocess.run(["git", "-C", self.checkout, "ls-files", "-co", "--exclude-standard", "-z"], check=True,
                                capture_output=True, text=True).stdout.split("\0")
        wanted = {name for name in listed if name and (self.checkout / name).is_file()}
        for name in wanted:
            source, target = self.checkout / name, self.root / name
            if not target.is_file() or target.read_bytes() != source.read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, target)
        for folder in ("src", "tests"):
            for file in (self.root / folder).rglob("*"):
                if file.is_file() and str(file.relative_to(self.root)) not in wanted:
                    file.unlink()
        self.clean_home()
        if not (self.build / "build.ninja").exists():
            # What is measured is the tests, not the speed: warnings and most of the optimiser only cost time.
            self.run(["cmake", "-S", self.root, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                      "-DCMAKE_CXX_COMPILER=g++", "-DCMAKE_CXX_FLAGS=-w", "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG",
                      "-DKAVORIX_BENCHMARKS=OFF"])

    def clean_home(self):
        shutil.rmtree(self.home, ignore_errors=True)
        for name in ("tmp", "config", "run"):
            (self.home / name).mkdir(parents=True, mode=0o700)

    def run(self, arguments):
        done = subprocess.run([str(one) for one in arguments], env=self.env, capture_output=True, text=True)
        if done.returncode:
            sys.stderr.write(done.stdout[-4000:] + done.stderr[-4000:])
            sys.exit(2)
        return done.stdout

    def test_programs(self):
        targets = self.run(["ninja", "-C", self.build, "-t", "targets", "all"]).splitlines()
        names = {line.split(":")[0] for line in targets}
        # The house rules judge the text, not what it does.
        return sorted(name for name in names if re.fullmatch(r"test_\w+", name) and name != "test_house_rules")

    def inputs(self, program):
        return set(self.run(["ninja", "-C", self.build, "-t", "inputs", program]).split())

    def make(self, targets):
        """Whether they were built."""
        done = subprocess.run(["ninja", "-C", str(self.build), f"-j{self.jobs}", *map(str, targets)], env=self.env,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.output = done.stdout
        return done.returncode == 0


# ------------------------------------------------------------------------------------------------ the tests

# Whole days of operation, whose parts shorter tests check as well.
LONG_TESTS = "-DayOfPolling.*:Log.ADayRepeatsByteForByte"


def limits():
    """A broken program may write or take memory without end."""
    resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 30, 1 << 30))
    resource.setrlimit(resource.RLIMIT_AS, (6 << 30, 6 << 30))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def failed_tests(tree, program, limit_s):
    """The tests of a program that fail; the one that was running when it crashed, or took longer than `limit_s`."""
    with tempfile.TemporaryDirectory(dir=tree.home / "tmp") as folder, tempfile.TemporaryFile("w+", dir=tree.home,
                                                                                             errors="replace") as output:
        process = subprocess.Popen([tree.build / program, f"--gtest_filter={LONG_TESTS}", "--gtest_color=no"],
                                   env={**tree.env, "TMPDIR": folder}, cwd=folder, stdout=output, stderr=subprocess.STDOUT,
                                   stdin=subprocess.DEVNULL, start_new_session=True, preexec_fn=limits)
        try:
            process.wait(limit_s)
        except subprocess.TimeoutExpired:
            pass
        try:
            os.killpg(process.pid, signal.SIGKILL)  # what the tests started goes along
        except ProcessLookupError:
            pass
        process.wait()
        output.seek(0)
        text = output.read()
    failed = set(re.findall(r"\[  FAILED  \] ([^\s,]+)(?=,| \()", text))
    if not re.search(r"^\[==========\] \d+ tests? .* ran\.", text, re.M):
        begun = re.findall(r"^\[ RUN      \] (\S+)", text, re.M)
        failed.add(begun[-1] if begun else program + " does not start")
    return failed


def judge(tree, one, inputs, usual_s):
    """The tests that notice a break; nothing when it is none."""
    target = tree.root / one.file
    text, times = target.read_text(), target.stat()
    objects = [path for path in {tree.build / name for names in inputs.values() for name in names}
               if str(path).endswith(f"/{one.file}.o")]
    before = {path: path.read_bytes() for path in objects}
    room = "test_" + "_".join(one.file.split("/")[1:-1])
    concerned = sorted((program for program, names in inputs.items() if any(str(path.relative_to(tree.build)) in names for path in objects)),
                       key=lambda program: (program != room, usual_s[program]))
    try:
        target.write_text(text[:one.start] + one.new + text[one.end:])
        if not concerned or not tree.make([path.relative_to(tree.build) for path in objects]):
            return None
        if all(path.read_bytes() == content for path, content in before.items()) or not tree.make(concerned):
            return None
        for program in concerned:
            if failed := failed_tests(tree, program, max(20, 4 * usual_s[program])):
                return sorted(failed)
        return []
    finally:
        # As if nothing had been: ninja goes by the times, and the library is made anew from the objects.
        target.write_text(text)
        os.utime(target, ns=(times.st_atime_ns, times.st_mtime_ns))
        for path, content in before.items():
            built = path.stat().st_mtime_ns if path.exists() else time.time_ns()
            path.write_bytes(content)
            os.utime(path, ns=(built, built))
        for library in tree.build.glob(f"libkavorix_{room[5:]}.a"):
            library.unlink()
        tree.clean_home()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--room", default="", help="folders of src/, with commas")
    parser.add_argument("--file", default="", help="files, with commas")
    parser.add_argument("--count", type=int, default=30, help="breaks of each room or file; 0 is all")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=1, help="of the build")
    parser.add_argument("--minutes", type=float, default=60, help="begins no further break after this time")
    parser.add_argument("--programs", default="", help="only these test programs, with commas")
    parser.add_argument("--list", action="store_true", help="show what is drawn, run nothing")
    parser.add_argument("--scratch", type=pathlib.Path, default=pathlib.Path.home() / ".cache" / "kavorix-mutants")
    options = parser.parse_args()
    checkout = pathlib.Path(__file__).resolve().parent.parent
    until = time.monotonic() + options.minutes * 60

    groups = {name: [name] for name in filter(None, options.file.split(","))}
    for room in filter(None, options.room.split(",")):
        groups[room] = sorted(str(file.relative_to(checkout)) for file in (checkout / "src" / room).glob("*.cpp")
                              if file.name != "main.cpp")
    if not groups or not all(groups.values()):
        parser.error("--room or --file, please")
    drawn = {name: draw(checkout, files, options.count, f"{options.seed} {name}") for name, files in groups.items()}
    if options.list:
        for some in drawn.values():
            print(*(diff_of(checkout, one) for one in some[:options.count or None]), sep="\n")
        return 0

    os.nice(10)
    options.scratch.mkdir(parents=True, exist_ok=True)
    with (options.scratch / "lock").open("w") as lock:
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            parser.error(f"another run works in {options.scratch}")
        return measure(Tree(checkout, options.scratch.resolve(), options.jobs), drawn, options, until)


def measure(tree, drawn, options, until):
    programs = list(filter(None, options.programs.split(","))) or tree.test_programs()
    print("building", *programs, flush=True)
    if not tree.make([*programs, "zavdrvr-sim"]):
        sys.stderr.write(tree.output[-4000:])
        return 2
    tree.env["CCACHE_READONLY"] = "1"  # the cache need not remember what is broken
    inputs = {program: tree.inputs(program) for program in programs}
    usual_s = {}
    for program in programs:
        begin = time.monotonic()
        if failed := failed_tests(tree, program, 600):
            sys.stderr.write("fail as they are: " + " ".join(sorted(failed)) + "\n")
            return 2
        usual_s[program] = time.monotonic() - begin

    noticed, unnoticed = 0, 0
    for name, some in drawn.items():
        wanted = options.count or len(some)
        for one in some:
            if wanted == 0 or time.monotonic() > until:
                break
            found = judge(tree, one, inputs, usual_s)
            if found is None:
                continue
            wanted -= 1
            if found:
                noticed += 1
                print(f"noticed    {one.file}:{one.line} {one.kind}: {len(found)}: {' '.join(found[:4])}", flush=True)
            else:
                unnoticed += 1
                print("UNNOTICED", diff_of(tree.checkout, one), flush=True)
    print(f"\n{noticed} noticed, {unnoticed} unnoticed" + (", the time was up" if time.monotonic() > until else ""))
    return 1 if unnoticed else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(130)
