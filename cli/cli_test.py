#!/usr/bin/env python3
"""End-to-end tests of the zyn command: exit codes, exact outputs against independent
references (sha1sum, zlib, colorsys, the kernel), codec round trips, error lines.
Usage: cli_test.py PATH-TO-ZYN"""
import colorsys
import hashlib
import os
import pathlib
import platform
import random
import struct
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
        pathlib.Path(path).write_bytes(data)
        return path

    def ok(self, *args, stdin=b""):
        r = run(*args, stdin=stdin)
        self.assertEqual(r.returncode, 0, r.stderr.decode())
        return r.stdout


class Usage(Base):
    def test_help_lists_every_subcommand(self):
        out = self.ok("--help").decode()
        for name in ("crc32", "crc16", "sha1", "a85", "rle", "grep", "lines", "tail", "detect",
                     "asc-header", "copy", "copytree", "deltree", "trash", "html", "marks",
                     "feat", "colour", "cpuid", "password"):
            self.assertIn(name, out)
        self.assertIn("--positions", self.ok("grep", "--help").decode())

    def test_bad_usage_is_2_and_failure_is_1(self):
        for args in ([], ["nosuch"], ["grep"], ["tail", "-n", "0", "x"], ["a85"],
                     ["grep", "*a", "-"], ["feat"], ["feat", "show"], ["colour", "name", "#ff"],
                     ["colour", "name", "123456789"], ["colour", "convert"],
                     ["colour", "convert", "red", "--rgb", "1", "2", "3"],
                     ["colour", "scale", "--size", "0"], ["colour", "scale", "--palette", "x"],
                     ["password", "--length", "x"]):
            self.assertEqual(run(*args).returncode, 2, args)
        missing = os.path.join(self.dir.name, "missing.txt")
        for cmd in (["sha1"], ["crc32"], ["lines"], ["tail"], ["detect"], ["asc-header"],
                    ["feat", "show"], ["feat", "check"], ["colour", "scale", "--png"]):
            r = run(*cmd, missing if cmd[0] != "colour" else os.path.join(missing, "s.png"))
            self.assertEqual(r.returncode, 1, cmd)
            self.assertRegex(r.stderr.decode(), r"\A[^\n]*missing\.txt[^\n]*\n\Z")


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
            for codec in ("a85", "rle"):
                enc = self.ok(codec, "encode", stdin=data)
                self.assertEqual(self.ok(codec, "decode", stdin=enc), data, codec)
        self.assertEqual(self.ok("rle", "encode", stdin=b"\x01\x01\x02\x02\x02\xa5\x03"),
                         b"\x01\x01\xa5\x03\x02\xa5\x01\xa5\xa5\x01\x03")


class Text(Base):
    def test_grep_lines_tail_detect_header(self):
        path = self.file("t.txt", "one 12 two\r\nnothing\nÄrger 7 and 88\n".encode())
        ends = self.file("e.txt", b"a\r\nb\nc\rd")
        asc = self.file("h.asc", b"Title\r\n12\r\n-3\r\ntrue FALSE true false\r\n")
        for args, want in (
                (["grep", "[0-9]+", path], "one 12 two\nÄrger 7 and 88\n"),
                (["grep", "-n", "-p", "[0-9]+", path], "1:5-6:12\n3:7-7:7\n3:13-14:88\n"),
                (["grep", "-c", "-i", "RGER", path, path], "%s:1\n%s:1\n" % (path, path)),
                (["lines", ends], "4\n"), (["tail", "-n", "2", ends], "c\nd\n"),
                (["tail", "-n", "9", ends], "a\nb\nc\nd\n"),
                (["asc-header", asc],
                 "text:  Title\nn1:    12\nn2:    -3\nflags: TRUE FALSE TRUE FALSE\n")):
            self.assertEqual(self.ok(*args).decode(), want, args)
        self.assertEqual(self.ok("grep", "^no", "-", stdin=b"no\nyes\n"), b"no\n")
        self.assertTrue(self.ok("detect", self.file("u", b"\xef\xbb\xbfx")).startswith(b"tftUTF8"))
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
        self.assertEqual(pathlib.Path(copy).read_bytes(), pathlib.Path(src, "big.bin").read_bytes())
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
        self.assertEqual(pathlib.Path(png).read_bytes()[:8], b"\x89PNG\r\n\x1a\n")


# A feature file: text in front, an undefined second feature, a value with a
# blank inside, object 2 without a value for feature 2.
FEATURES = b"""notes
#featdef 2 1
1 fplFeatNum 10
1 fplFeatName speed
1 fplFeatKind fkDouble
1 fplComment top speed
1 fplPresets 
1 fplSorted FALSE
2 fplFeatNum 12
2 fplFeatName odd
2 fplComment 
2 fplPresets 
2 fplSorted FALSE
2 fplGUIElem x
#featvals 2 2
1 1 3.5
2 1 dark red
1 2 4.25
#featend
"""


def png_rows(path):
    """The RGB rows of an 8-bit RGB PNG, read with zlib alone."""
    data = pathlib.Path(path).read_bytes()
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    pos, idat = 8, b""
    while pos < len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + length]
        if kind == b"IHDR":
            width, height, depth, colour_type = struct.unpack(">IIBB", body[:10])
            assert (depth, colour_type) == (8, 2)
        elif kind == b"IDAT":
            idat += body
        pos += 12 + length
    raw, stride, rows, prev = zlib.decompress(idat), width * 3, [], bytes(width * 3)
    for y in range(height):
        f, line = raw[y * (stride + 1)], bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for i in range(stride):
            a, b, c = line[i - 3] if i >= 3 else 0, prev[i], prev[i - 3] if i >= 3 else 0
            p = a + b - c
            pred = [0, a, b, (a + b) // 2,
                    a if abs(p - a) <= min(abs(p - b), abs(p - c)) else b if abs(p - b) <= abs(p - c)
                    else c][f]
            line[i] = (line[i] + pred) & 0xFF
        rows.append(bytes(line))
        prev = line
    return width, height, rows


class Data(Base):
    def test_feat_show_and_check(self):
        path = self.file("f.feat", FEATURES)
        self.assertEqual(self.ok("feat", "show", path).decode(),
                         "object  speed   odd\n"
                         "        double  undefined\n"
                         "1       3.5     dark red\n"
                         "2       4.25\n")
        self.assertEqual(self.ok("feat", "check", path).decode(),
                         path + ": 0, a feature block was read: 2 features, 2 objects\n")
        for name, data, code in (("none.feat", None, "-1"), ("text.feat", b"no block\n", "-2"),
                                 ("bad.feat", b"#featdef 0 1\n#featvals x 1\n", "-3")):
            path = os.path.join(self.dir.name, name) if data is None else self.file(name, data)
            for cmd in ("show", "check"):
                r = run("feat", cmd, path)
                self.assertEqual((r.returncode, r.stdout), (1, b""), name)
                self.assertTrue(r.stderr.decode().startswith("zyn: %s: %s, " % (path, code)))
                self.assertEqual(len(r.stderr.splitlines()), 1)

    def test_colour_name(self):
        cases = [("Blue", "00FF0000"), ("red", "000000FF"), ("YELLOWGREEN", "0032CD9A"),
                 ("ff0000", "Blue"), ("$FF00FF", "Fuchsia"), ("32cd9a", "OliveDrab3"),
                 ("123456", "00123456"), ("FF000005", "FF000005"), ("0", "Black")]
        args = [given for given, _ in cases]
        self.assertEqual(self.ok("colour", "name", *args).decode().splitlines(),
                         [want for _, want in cases])

    def test_colour_convert_agrees_with_colorsys(self):
        rng = random.Random(3)
        for r, g, b in [(255, 0, 0), (0, 0, 0), (128, 128, 128), (255, 0, 1)] + [
                tuple(rng.randrange(256) for _ in range(3)) for _ in range(30)]:
            value = "%02X%02X%02X" % (b, g, r)
            out = dict(line.split(":", 1) for line in self.ok("colour", "convert", value).decode()
                       .splitlines())
            self.assertEqual(self.ok("colour", "convert", "--rgb", str(r), str(g), str(b)).decode(),
                             self.ok("colour", "convert", "$" + value).decode())
            h, s, v = colorsys.rgb_to_hsv(r / 255, g / 255, b / 255)
            h = 0.0 if max(r, g, b) == 0 else -1.0 if s == 0 else h * 360
            c, m, y = 1 - r / 255, 1 - g / 255, 1 - b / 255
            k = min(c, m, y)
            gray = round(r * 0.3 + g * 0.59 + b * 0.11)
            self.assertEqual(out["rgb"].split(), [str(r), str(g), str(b)])
            self.assertEqual(out["gray"].split(), [str(gray), "00%02X%02X%02X" % (gray, gray, gray)])
            for key, want, tol in (("hsi", (h, s, v), 0.0051), ("cmy", (c, m, y), 0.00051),
                                   ("cmyk", (c - k, m - k, y - k, k), 0.00051)):
                got = [float(x) for x in out[key].split()]
                for a, w in zip(got, want, strict=True):
                    self.assertAlmostEqual(a, w, delta=tol, msg=(key, r, g, b))
        for args, name in ((["--hsi", "240", "1", "1"], "Blue"), (["--cmy", "0", "1", "1"], "Red"),
                           (["--cmyk", "0", "0", "1", "0.5"], "Olive"), (["red1"], "Red")):
            self.assertIn("name:  %s\n" % name, self.ok("colour", "convert", *args).decode())

    def test_colour_scale(self):
        contrast = ["000000", "FF0000", "008000", "0000FF", "0080FF", "808080", "404080", "FF00FF",
                    "800000", "00FF00", "C5CD18", "808000", "FF0080", "41E1EE", "800080", "8000FF"]
        # With as many colours as the palette's highest index, index i is the
        # palette's entry i: the first entry is left out.
        self.assertEqual(self.ok("colour", "scale", "--palette", "contrast", "--size", "15").decode(),
                         "1 15\n" + "".join("00%s\n" % c for c in contrast[1:]))
        block = self.ok("colour", "scale", "--size", "300", "--levels", "5").decode().splitlines()
        self.assertEqual((block[0], len(block), block[-1]), ("1 300", 301, "00000040"))
        self.assertEqual(len(set(block[1:])), 6)
        png = os.path.join(self.dir.name, "s.png")
        self.assertEqual(self.ok("colour", "scale", "--size", "300", "--levels", "5", "--png", png,
                                 "--height", "3"), b"")
        width, height, rows = png_rows(png)
        self.assertEqual((width, height), (300, 3))
        want = b"".join(bytes.fromhex(c[6:8] + c[4:6] + c[2:4]) for c in block[1:])
        self.assertEqual(rows, [want] * 3)


class System(Base):
    @unittest.skipUnless(platform.machine() in ("x86_64", "i686", "AMD64")
                         and os.path.exists("/proc/cpuinfo"), "the kernel's view of an x86")
    def test_cpuid_agrees_with_the_kernel(self):
        lines = self.ok("cpuid").decode().splitlines()
        out = dict((k.strip(), v.strip()) for k, v in (l.split(":", 1) for l in lines if ":" in l))
        features = {l.strip() for l in lines if l.startswith("  ")}
        first = pathlib.Path("/proc/cpuinfo").read_text().split("\n\n")[0]
        kernel = dict((k.strip(), v.strip()) for k, v in (l.split(":", 1) for l in first.splitlines()))
        family, model = int(out["family"]), int(out["model"])
        self.assertEqual(out["vendor"], kernel["vendor_id"])
        self.assertEqual(out["market"], kernel["model name"])
        self.assertEqual(family + (int(out["ex family"]) if family == 15 else 0),
                         int(kernel["cpu family"]))
        self.assertEqual(model + (int(out["ex model"]) << 4 if family in (6, 15) else 0),
                         int(kernel["model"]))
        self.assertEqual(out["stepping"], kernel["stepping"])
        self.assertEqual(int(out["count"]), len(os.sched_getaffinity(0)))
        self.assertEqual(out["fdiv bug"], "no")
        flags = kernel["flags"].split()
        for flag, name in (("fpu", "Floating Point Unit"), ("cx8", "Compare Exchange Eight Byte "
                           "instruction available"), ("cmov", "Conditional MOVe instructions"),
                           ("mmx", "MultiMedia Extensions"), ("sse", "SSE instructions"),
                           ("sse2", "SSE2 (WNI) instructions")):
            self.assertEqual(name in features, flag in flags, flag)

    def test_password(self):
        vowels, consonants = set("aeiouy"), set("bcdfghjklmnpqrstvwxz")
        for length, size in ((0, 4), (4, 4), (7, 7), (9, 9), (14, 14), (100, 14)):
            for seed in range(5):
                pw = self.ok("password", "--seed", str(seed), "--length", str(length)).decode()
                self.assertEqual((len(pw), pw[-1]), (size + 1, "\n"))
                pw = pw[:-1]
                at = 6 if size > 8 else size - 2
                self.assertTrue(pw[at:at + 2].isdigit(), pw)
                letters = pw[:at] + pw[at + 2:]
                kinds = [vowels if (i + size) % 2 else consonants for i in range(len(letters))]
                self.assertTrue(all(ch in k for ch, k in zip(letters, kinds)), pw)
                fancy = self.ok("password", "--seed", str(seed), "-l", str(length), "--caps")
                self.assertEqual(fancy.decode().lower(), pw + "\n")
                special = self.ok("password", "--seed", str(seed), "-l", str(length), "-c", "-s")
                self.assertTrue(set(special.decode().strip()) <= vowels | consonants | set(
                    "AEIOUYBCDFGHJKLMNPQRSTVWXZ0123456789_!$%#="))
        self.assertGreater(len({self.ok("password") for _ in range(8)}), 1)


if __name__ == "__main__":
    ZYN = os.path.abspath(sys.argv.pop(1))
    unittest.main(verbosity=1)
