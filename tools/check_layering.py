#!/usr/bin/env python3
"""Checks that each unit includes only the units it may call, and that code
outside the platform layer includes no operating-system header.

Usage: check_layering.py [repo-root]. Exits 1 and lists each offending line."""
import pathlib
import re
import sys

# Which folders a folder's code may include, besides its own.
ALLOWED = {
    "platform": set(),
    "base": {"platform"},
    "colors": {"platform", "base"},
    "stringl": {"platform", "base"},
    "streams": {"platform", "base"},
    "html": {"platform", "base", "stringl", "streams"},
    "dstruct": {"platform", "base", "stringl"},
    "cpuid": {"platform", "base", "stringl"},
    "filesys": {"platform", "base", "stringl", "streams"},
}
OS_HEADERS = re.compile(r'#\s*include\s*<(unistd\.h|windows\.h|dlfcn\.h|fcntl\.h|dirent\.h|'
                        r'sys/[^>]+|pwd\.h|cpuid\.h|intrin\.h|png\.h|ft2build\.h|'
                        r'fontconfig/[^>]+|cairo[^>]*\.h)>')
ZYN_INCLUDE = re.compile(r'#\s*include\s*"zyn/([a-z]+)/')


def main() -> int:
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    problems = []
    for folder, allowed in ALLOWED.items():
        for path in sorted((root / "zyn" / folder).glob("*")):
            if path.suffix not in (".h", ".cpp", ".inc"):
                continue
            is_test = path.stem.endswith("_test")
            for number, line in enumerate(path.read_text(errors="replace").splitlines(), 1):
                m = ZYN_INCLUDE.search(line)
                if m and m.group(1) != folder and m.group(1) not in allowed:
                    problems.append(f"{path}:{number}: {folder} may not include zyn/{m.group(1)}")
                if folder != "platform" and not is_test and OS_HEADERS.search(line):
                    problems.append(f"{path}:{number}: operating-system header outside the platform layer")
    for p in problems:
        print(p)
    print(f"layering: {len(problems)} problem(s)")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
