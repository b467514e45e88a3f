#!/usr/bin/python3
"""Every C and C++ file of ours is formatted as .clang-format says. Prints those that are not."""

import pathlib
import subprocess
import sys

# Formatting differs from one version to the next.
TOOL = "clang-format-14"
FOLDERS = ("app", "base", "bench", "demo", "link", "packaging", "platform", "services", "tests", "update", "web")


def main():
    root = pathlib.Path(sys.argv[1])
    sources = [path for folder in FOLDERS for path in sorted((root / folder).rglob("*"))
               if path.suffix in (".h", ".c", ".cpp", ".m", ".mm")]
    if not sources:
        sys.exit("no source found")
    result = subprocess.run([TOOL, "--dry-run", "--Werror", *sources], stdin=subprocess.DEVNULL,
                            capture_output=True, text=True, check=False)
    if result.returncode:
        wrong = sorted({line.split(":")[0] for line in result.stderr.splitlines() if " error: " in line})
        sys.exit("\n".join(["Not formatted; clang-format-14 -i does it:", *(wrong or [result.stderr])]))
    print(f"{len(sources)} files are formatted.")


if __name__ == "__main__":
    main()
