#!/usr/bin/env python3
"""End-to-end tests of the zyn command: exit codes, exact outputs against
independent references (sha1sum, zlib, published check values), round trips
of the codecs, and the error line for a missing file.

Usage: cli_test.py PATH-TO-ZYN"""
import hashlib
import os
import random
import subprocess
import sys
import tempfile
import unittest
import zlib

ZYN = None


def run(*args, stdin=b"", env=None):
    return subprocess.run([ZYN, *args], input=stdin, capture_output=True, timeout=120, env=env)


class Base(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.TemporaryDirectory()
        self.addCleanup(self.dir.cleanup)

    def file(self, name, data):
        path = os.path.join(self.dir.name, name)
        with open(path, "wb") as f:
            f.write(data)
        return path

    def ok(self, *args, stdin=b""):
        r = run(*args, stdin=stdin)
        self.assertEqual(r.returncode, 0, r.stderr.decode())
        return r.stdout


class Usage(Base):
    def test_help_lists_every_subcommand(self):
        out = self.ok("--help").decode()
        for name in ("crc32", "crc16", "sha1", "a85", "rle", "grep", "lines", "tail", "detect",
                     "asc-header", "copy", "copytree", "deltree", "trash", "html", "marks"):
            self.assertIn(name, out)
        self.assertIn("--positions", self.ok("grep", "--help").decode())

    def test_bad_usage_is_2_and_failure_is_1(self):
        for args in ([], ["nosuch"], ["grep"], ["tail", "-n", "0", "x"], ["a85"],
                     ["grep", "*a", "-"]):
            self.assertEqual(run(*args).returncode, 2, args)
        missing = os.path.join(self.dir.name, "missing.txt")
        for cmd in ("sha1", "crc32", "lines", "tail", "detect", "asc-header"):
            r = run(cmd, missing)
            self.assertEqual(r.returncode, 1, cmd)
            lines = r.stderr.decode().splitlines()
            self.assertEqual(len(lines), 1, r.stderr)
            self.assertIn("missing.txt", lines[0])


class Codecs(Base):
    def test_sums_agree_with_references(self):
        data = bytes(random.Random(1).getrandbits(8) for _ in range(100000))
        path = self.file("data.bin", data)
        sha = subprocess.run(["sha1sum", path], capture_output=True, check=True).stdout
        self.assertEqual(self.ok("sha1", path), sha)
        self.assertEqual(self.ok("crc32", path).decode(), "%08x  %s\n" % (zlib.crc32(data), path))
        self.assertEqual(self.ok("sha1", stdin=b"abc").decode(),
                         hashlib.sha1(b"abc").hexdigest() + "  -\n")
        self.assertEqual(self.ok("crc16", "-", stdin=b"123456789"), b"29b1  -\n")

    def test_codecs_round_trip(self):
        rng = random.Random(2)
        samples = [b"", b"abc", b"\xa5" * 700, bytes(rng.getrandbits(8) for _ in range(5000)),
                   b"".join(bytes([rng.choice(b"\x00\xa5x")]) * rng.randint(1, 300)
                            for _ in range(200))]
        self.assertEqual(self.ok("a85", "encode", stdin=b"abc"), b"+B>H~>")
        for data in samples:
            enc = self.ok("a85", "encode", stdin=data)
            self.assertEqual(self.ok("a85", "decode", stdin=enc), data)
            rle = self.ok("rle", "encode", stdin=data)
            self.assertEqual(self.ok("rle", "decode", stdin=rle), data)
        self.assertEqual(self.ok("rle", "encode", stdin=b"\x01\x01\x02\x02\x02\xa5\x03"),
                         b"\x01\x01\xa5\x03\x02\xa5\x01\xa5\xa5\x01\x03")


class Text(Base):
    def test_grep(self):
        path = self.file("t.txt", "one 12 two\r\nnothing\nÄrger 7 and 88\n".encode())
        self.assertEqual(self.ok("grep", "[0-9]+", path).decode(),
                         "one 12 two\nÄrger 7 and 88\n")
        self.assertEqual(self.ok("grep", "-n", "-p", "[0-9]+", path).decode(),
                         "1:5-6:12\n3:7-7:7\n3:13-14:88\n")
        self.assertEqual(self.ok("grep", "-c", "-i", "RGER", path, path).decode(),
                         "%s:1\n%s:1\n" % (path, path))
        self.assertEqual(self.ok("grep", "^no", "-", stdin=b"no\nyes\n"), b"no\n")

    def test_lines_tail_detect_header(self):
        path = self.file("t.txt", b"a\r\nb\nc\rd")
        self.assertEqual(self.ok("lines", path), b"4\n")
        self.assertEqual(self.ok("tail", "-n", "2", path), b"c\nd\n")
        self.assertEqual(self.ok("tail", "-n", "9", path), b"a\nb\nc\nd\n")
        self.assertTrue(self.ok("detect", self.file("u", b"\xef\xbb\xbfx")).startswith(b"tftUTF8"))
        asc = self.file("h.asc", b"Title\r\n12\r\n-3\r\ntrue FALSE true false\r\n")
        self.assertEqual(self.ok("asc-header", asc),
                         b"text:  Title\nn1:    12\nn2:    -3\nflags: TRUE FALSE TRUE FALSE\n")
        r = run("asc-header", self.file("bad.asc", b"T\n1\n2\nTRUE TRUE TRUE TRUE\n"))
        self.assertEqual(r.returncode, 1)
        self.assertIn("bare LF", r.stderr.decode())


class Files(Base):
    def tree(self):
        src = os.path.join(self.dir.name, "src")
        os.makedirs(os.path.join(src, "sub", "empty"))
        self.file("src/big.bin", os.urandom(300000))
        self.file("src/sub/a.txt", b"a")
        return src

    def test_copies_and_progress_only_on_a_terminal(self):
        src = self.tree()
        dst = os.path.join(self.dir.name, "dst")
        r = run("copytree", src, dst)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertEqual(subprocess.run(["diff", "-r", src, dst]).returncode, 0)
        # Not a terminal: one closing line, no bar.
        self.assertEqual(len(r.stderr.splitlines()), 1)
        self.assertIn(b"2/2 files", r.stderr)
        self.assertNotIn(b"[", r.stderr)
        copy = os.path.join(self.dir.name, "copy.bin")
        self.ok("copy", os.path.join(src, "big.bin"), copy)
        with open(copy, "rb") as a, open(os.path.join(src, "big.bin"), "rb") as b:
            self.assertEqual(a.read(), b.read())
        # On a terminal (script gives one): the bar, redrawn in place.
        tty = subprocess.run(["script", "-q", "-e", "-c",
                              "%s copytree %s %s" % (ZYN, src, dst + "2"), "/dev/null"],
                             capture_output=True, timeout=60)
        self.assertEqual(tty.returncode, 0)
        self.assertIn(b"\r[########################] 100%", tty.stdout)
        r = run("copy", os.path.join(src, "nothing"), copy)
        self.assertEqual((r.returncode, r.stderr.count(b"\n")), (1, 1))

    def test_deltree_asks_and_trash_moves(self):
        src = self.tree()
        self.assertEqual(run("deltree", src, stdin=b"n\n").returncode, 1)
        self.assertTrue(os.path.isdir(src))
        self.ok("deltree", src, stdin=b"y\n")
        self.assertFalse(os.path.exists(src))
        home = os.path.join(self.dir.name, "home")
        env = dict(os.environ, HOME=home, XDG_DATA_HOME=os.path.join(home, "share"))
        victim = self.file("old.log", b"x")
        r = run("trash", victim, env=env)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertTrue(os.path.exists(os.path.join(home, "share", "Trash", "files", "old.log")))
        self.assertEqual(run("trash", victim, env=env).returncode, 1)


class Html(Base):
    def test_render_and_marks(self):
        page = self.file("t.html", "<p>Hi <#Name>, <#other x=1>: ä</p>".encode())
        self.assertEqual(self.ok("html", "render", page, "--set", "name=Ann"),
                         "<p>Hi Ann, <#other x=1>: ä</p>\r\n".encode())
        r = run("html", "render", page, "--strict", "--set", "name=Ann")
        self.assertEqual(r.returncode, 1)
        self.assertIn(b"<#other>", r.stderr)
        self.assertEqual(run("html", "render", page, "--set", "novalue").returncode, 2)
        png = os.path.join(self.dir.name, "m.png")
        self.ok("marks", "--png", png)
        with open(png, "rb") as f:
            self.assertEqual(f.read(8), b"\x89PNG\r\n\x1a\n")


if __name__ == "__main__":
    ZYN = os.path.abspath(sys.argv.pop(1))
    unittest.main(verbosity=1)
