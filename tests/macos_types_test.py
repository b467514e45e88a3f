#!/usr/bin/python3
"""Type-checks the macOS front end, and the contract tests that play its user, with clang, on any system, against the
outline of the platform's interface.

The target is a Mac, so that availability and deprecation count; the C++ library and Boost are this system's. Before
the front end, mistakes that must be found are shown to the compiler. It has nothing against a method that nobody
calls, such as an optional one of a delegate with a slip in its name: those are looked for here. Prints what is found;
fails when there is anything."""

import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys
import tempfile

COMPILER = "clang++"
LANGUAGE = ("-x", "objective-c++", "-std=c++20", "-fobjc-arc", "-fblocks", "-fsyntax-only")
WARNINGS = ("-Wall", "-Wextra", "-Wpedantic", "-Werror", "-Wshadow", "-Wnon-virtual-dtor", "-Woverloaded-virtual",
            "-Wno-nullability-extension", "-Wunguarded-availability", "-Wnullability-completeness",
            "-Wnullable-to-nonnull-conversion", "-Wundeclared-selector", "-Wstrict-selector-match")
# As the program's build defines them.
DEFINITIONS = ("-DORVALLE_VERSION=\"0\"", "-DORVALLE_BUILD=\"1\"", "-DORVALLE_UPDATE_SIGNER=\"\"")
# Half of the work would be to read these once for each file.
LIBRARY = ("algorithm", "chrono", "cmath", "filesystem", "functional", "map", "memory", "optional", "span", "string",
           "string_view", "utility", "vector")
TEST_LIBRARY = (*LIBRARY, "fstream", "gmock/gmock.h", "gtest/gtest.h", "libsoup/soup.h")
MISTAKES = {
    "a selector that does not exist": ("void f(NSURL* u) { (void)[u absoluteText]; }", "no visible @interface"),
    "an argument of another type": ("void f() { (void)[NSURL URLWithString:@1]; }", "cannot initialize a parameter"),
    "nothing where something is needed": ("void f() { (void)[NSURL URLWithString:nil]; }", "null passed"),
    "a result that may be nothing, as an argument": (
        "void f(NSURL* u) { (void)[NSURL fileURLWithPath:u.path]; }", "nullable pointer"),
    "what is newer than the oldest system": (
        "@interface A : NSObject\n- (void)b API_AVAILABLE(macos(14.0));\n@end\nvoid f(A* a) { [a b]; }",
        "only available on macOS 14"),
    "what is deprecated": (
        "@interface A : NSObject\n- (void)b API_DEPRECATED(\"c\", macos(10.0, 12.0));\n@end\nvoid f(A* a) { [a b]; }",
        "deprecated"),
    "a method that the protocol wants": (
        "@protocol P\n- (void)b;\n@end\n@interface A : NSObject <P>\n@end\n@implementation A\n@end", "not implemented"),
}

BLOCK = re.compile(r"^@(interface|protocol|implementation)\b(?![^\n{]*;)(.*?)^@end", re.MULTILINE | re.DOTALL)
METHOD = re.compile(r"^[-+]\s*\((?:[^()]|\([^()]*\))*\)\s*([^;{]*)", re.MULTILINE)
PROPERTY = re.compile(r"^@property(\([^)]*\))?[^;]*?(\w+)(?:\s+API_\w+\(.*?\))?;", re.MULTILINE | re.DOTALL)
SLIP = "@implementation A\n- (void)userNotificationCentre:(id)centre willPresent:(void (^)(int))it {\n}\n@end\n"


def library_folders():
    """Where this system's compiler finds the C++ library and everything else."""
    said = subprocess.run([COMPILER, "-x", "c++", "-E", "-v", os.devnull], stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, check=True).stderr
    listed = re.search(r"#include <...> search starts here:\n(.*?)End of search list", said, re.DOTALL).group(1)
    folders = [line.strip() for line in listed.splitlines()]
    # The compiler's own headers come with any target.
    return [folder for folder in folders if not re.search(r"/clang/[\d.]+/include$", folder)]


def command(root):
    system = [word for folder in library_folders() for word in ("-isystem", folder)]
    # The C library has macros with these names, and shows its declarations to GNU systems only.
    names = ("-U__nonnull", "-U__nullable", "-U__null_unspecified", "-D_GNU_SOURCE", "-D__linux__")
    return [COMPILER, "--target=x86_64-apple-macosx13.0", *LANGUAGE, *WARNINGS, *DEFINITIONS, *names, "-nostdinc++", *system,
            "-I", str(root / "platform/macos/api-outline"), "-I", str(root)]


def contract_sources(root):
    """The contract tests that speak Objective-C on a Mac, as their build lists them."""
    lists = (root / "tests/contract/CMakeLists.txt").read_text(encoding="utf-8")
    listed = re.search(r"set_source_files_properties\(([^)]*?)PROPERTIES LANGUAGE OBJCXX\)", lists).group(1).split()
    return [root / "tests/contract" / name for name in listed]


def contract_command(words):
    """Their servers stand on this system's libraries."""
    said = subprocess.run(["pkg-config", "--cflags-only-I", "libsoup-3.0"], stdin=subprocess.DEVNULL, capture_output=True,
                          text=True, check=True).stdout
    return [*words, *(word for folder in said.split() for word in ("-isystem", folder.removeprefix("-I")))]


def read_once(words, headers, folder):
    """The command, which finds these headers read already."""
    source, result = folder / f"{len(headers)}.h", folder / f"{len(headers)}.pch"
    source.write_text("".join(f"#include <{header}>\n" for header in headers), encoding="utf-8")
    language = [word for word in words if word != "-fsyntax-only"]
    language[language.index("objective-c++")] += "-header"
    subprocess.run([*language, str(source), "-o", str(result)], stdin=subprocess.DEVNULL, check=True)
    return [*words, "-include-pch", str(result)]


def complaints(words, source):
    result = subprocess.run([*words, str(source)], stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    return result.stderr + ("" if result.returncode == 0 or result.stderr else f"{source}: status {result.returncode}")


def missed_mistakes(words):
    with tempfile.TemporaryDirectory() as folder:
        for number, (what, (code, complaint)) in enumerate(MISTAKES.items()):
            source = pathlib.Path(folder) / f"{number}.mm"
            source.write_text(f"#import <Foundation/Foundation.h>\n{code}\n", encoding="utf-8")
            said = complaints(words, source)
            if complaint not in said:
                yield f"The check does not find {what}:\n{said}"


def selector(words):
    """The name of a method, from what is written between its result and its body."""
    shorter = re.sub(r"\([^()]*\)", " ", words)
    if shorter != words:
        return selector(shorter)
    parts = re.findall(r"(\w+)\s*:", words)
    return "".join(f"{part}:" for part in parts) or words.split()[0]


def methods(text, kinds):
    found = set()
    for _, body in (block for block in BLOCK.findall(text) if block[0] in kinds):
        found |= {selector(words) for words in METHOD.findall(body)}
        for attributes, name in PROPERTY.findall(body):
            getter = re.search(r"getter\s*=\s*(\w+)", attributes)
            found |= {getter.group(1) if getter else name, f"set{name[0].upper()}{name[1:]}:"}
    return found


def uncalled_methods(text, declared):
    """Those that neither a header nor the file itself knows of."""
    used = set(re.findall(r"@selector\(([\w:]+)\)", text))
    return sorted(methods(text, ("implementation",)) - methods(text, ("interface", "protocol")) - declared - used)


def main():
    root = pathlib.Path(sys.argv[1])
    sources = [*sorted((root / "platform/macos").glob("*.mm")), *sorted((root / "app").glob("main_*.mm"))]
    if not sources:
        sys.exit("no source found")
    words = command(root)
    found = list(missed_mistakes(words))
    headers = sorted((root / "platform/macos").rglob("*.h"))
    declared = set().union(*(methods(header.read_text(encoding="utf-8"), ("interface", "protocol")) for header in headers))
    if uncalled_methods(SLIP, declared) != ["userNotificationCentre:willPresent:"]:
        found.append("The check does not find a method that nobody calls")
    found += [f"{source}: nobody declares or uses {name}" for source in sources
              for name in uncalled_methods(source.read_text(encoding="utf-8"), declared)]
    tests = contract_sources(root)
    with tempfile.TemporaryDirectory() as folder, concurrent.futures.ThreadPoolExecutor(2) as pool:
        words = read_once(words, LIBRARY, pathlib.Path(folder))
        test_words = read_once(contract_command(command(root)), TEST_LIBRARY, pathlib.Path(folder))
        found += [said for said in pool.map(lambda source: complaints(words, source), sources) if said]
        found += [said for said in pool.map(lambda source: complaints(test_words, source), tests) if said]
    if found:
        sys.exit("\n".join(found))
    print(f"{len(sources)} files and {len(tests)} contract tests use the platform as it is declared.")


if __name__ == "__main__":
    main()
