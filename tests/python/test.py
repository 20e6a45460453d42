"""The Python package on the sample. Run where it is installed."""
import copy
import gc
import pathlib
import pickle
import struct
import subprocess
import sys
import tempfile
import threading
import unittest

import zobgp

SAMPLE = "samples/rib.bird.mrt.gz"


class Zobgp(unittest.TestCase):
    def test_equal_lists_are_one_object(self):
        one = zobgp.parse("standard", "no-export, 65000:100 65000:100")
        self.assertIs(one, zobgp.parse("standard", "65000:100 NO_EXPORT"))
        self.assertEqual(one.values, ("65000:100", "NO_EXPORT"))
        self.assertEqual(one.octets, (bytes.fromhex("fde80064"), bytes.fromhex("ffffff01")))
        self.assertIs(one, zobgp._tables.read("standard", bytes.fromhex("ffffff01fde80064")))
        self.assertIsNot(one, zobgp.Tables().parse("standard", str(one)))
        long = zobgp.parse("large", " ".join(f"65000:{i}:1" for i in range(1000)))
        self.assertEqual((len(long), long.values[-1]), (1000, "65000:999:1"))

    def test_values_are_texts_both_ways(self):
        for text in ("65000:1", "route-target-as2:65000:100", "mac-mobility:S:5", "65000:1:2",
                     "route-target-ipv6:[2001:db8::1]:5"):
            type, octets = zobgp.value(text)
            self.assertEqual(zobgp.text(type, octets), text)

    def test_what_is_wrong_says_why(self):
        taken = zobgp.paths(SAMPLE)
        taken._take()
        for call, reason in ((lambda: zobgp.parse("standard", "1:70000"), "below 65536"),
                             (lambda: zobgp.parse("other", ""), "'other'"),
                             (lambda: zobgp.text("large", b"123"), "12 octets"),
                             (lambda: zobgp.Tables().read("standard", b"123"), "3 octets"),
                             (lambda: zobgp.value("1:2\0x"), "NUL"),
                             (lambda: zobgp.value("\ud800"), "ud800"),
                             (lambda: zobgp.parse("standard", "\ud800"), "ud800"),
                             (lambda: next(taken), "one thread"),
                             (taken.close, "one thread"),
                             (lambda: zobgp.paths("/nonexistent"), "/nonexistent: No such file"),
                             (lambda: list(zobgp.paths("README.md")), "README.md: not an MRT file: .* text file")):
            with self.assertRaisesRegex(zobgp.Error, reason):
                call()

    def test_wrong_flags_and_repeats_are_not_malformed(self):
        """UPDATEs, each with attributes of type COMMUNITIES."""
        right = bytes.fromhex("c00804fde80001")
        wrong = ("malformed", "wrong_flags")
        for attributes, texts, values in (
                (right, {}, ("65000:1",)),
                (right + right, {}, ("65000:1",)),
                (bytes.fromhex("800804fde80001"), {"wrong_flags": "Community .*flags 0x80"}, ("65000:1",)),
                (bytes.fromhex("400803fde800"),
                 {"malformed": "offset 0: 3 octets", "wrong_flags": "Community .*flags 0x40"}, ()),
                (bytes.fromhex("c00803fde800c01003fde800"),
                 {"malformed": "Community .*offset 0: 3 octets.*; Extended.*offset 0: 3 octets"}, ()),
                (right + b"\xc0", {"malformed": "."}, ("65000:1",))):
            update = struct.pack(">HH", 0, len(attributes)) + attributes
            message = b"\xff" * 16 + struct.pack(">HB", 19 + len(update), 2) + update
            body = struct.pack(">IIHHII", 64500, 64501, 0, 1, 0, 0) + message
            with tempfile.NamedTemporaryFile() as file:
                file.write(struct.pack(">IHHI", 0, 16, 4, len(body)) + body)
                file.flush()
                path, = zobgp.paths(file.name)
            for name in wrong:
                self.assertRegex(getattr(path, name), texts.get(name, "^$"), attributes.hex())
            self.assertEqual(path.standard.values, values)

    def test_paths_share_their_lists(self):
        paths = list(zobgp.paths(SAMPLE))
        self.assertEqual(len(paths), 9723)
        by_values = {}
        for path in paths:
            self.assertIs(by_values.setdefault(path.standard.values, path.standard), path.standard)
        self.assertEqual(sum("NO_EXPORT" in path.standard for path in paths), 446)
        self.assertEqual((paths[0].time.isoformat(), paths[0].peer, paths[0].prefixes, paths[0].next_hop),
                         ("2026-11-21T01:26:53+00:00", "127.0.0.5", ("32.0.0.0/24",), "192.0.2.7"))
        first = paths[0].standard
        del paths, path, by_values
        gc.collect()
        self.assertEqual(first.values, ("64600:101", "64600:1006"))
        with zobgp.paths(SAMPLE) as some:
            self.assertIs(next(some).standard, first)
        self.assertEqual(list(some), [])

    def test_threads_share_lists(self):
        faults = []

        def work(start):
            for i in range(start, start + 20000):
                one, other = (zobgp.parse("standard", f"65000:{i % 5} no-export") for _ in range(2))
                if one is not other or one.values[0] != f"65000:{i % 5}":
                    faults.append((i, one.values))
                del one, other
        before, threads = sys.getswitchinterval(), [threading.Thread(target=work, args=[i]) for i in range(4)]
        sys.setswitchinterval(1e-5)
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        sys.setswitchinterval(before)
        gc.collect()
        self.assertEqual((faults[:5], zobgp._known), ([], {}))

    def test_copies_are_the_list(self):
        path = next(zobgp.paths(SAMPLE))
        for again in (copy.copy(path), copy.deepcopy(path), pickle.loads(pickle.dumps(path))):
            self.assertIs(again.standard, path.standard)
            self.assertIs(again.large, path.large)
        for one in (zobgp.Tables(), zobgp.paths(SAMPLE)):
            self.assertRaisesRegex(TypeError, type(one).__name__, copy.copy, one)

    def test_ends_in_any_order_and_says_nothing(self):
        # The collector ends a ring's parts, then asks its finalizer.
        used = f"""
import gc, zobgp
class Ring:
    def __init__(self, tables):
        self.self, self.tables, self.paths = self, tables, zobgp.paths({SAMPLE!r}, tables)
        self.list = next(self.paths).standard
    def __del__(self):
        try: self.tables.parse("large", "1:2:3")
        except zobgp.Error: revived.append(self)
revived = []
Ring(zobgp.Tables())
gc.collect()
others = [zobgp.parse("standard", f"7:{{i}}") for i in range(99)]
assert str(revived[0].list) == "64600:101 64600:1006" and not list(revived[0].paths)"""
        # The module's names end in front of what `threading` has.
        late = f"""
import threading, zobgp
class Ring:
    def __init__(self): self.self, self.tables, self.paths = self, zobgp.Tables(), zobgp.paths({SAMPLE!r})
threading.last = Ring()"""
        for program in used, late:
            run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True)
            self.assertEqual((run.returncode, run.stderr), (0, ""))

    def test_a_fork_has_the_lists_and_no_reader(self):
        program = f"""
import os, threading, time, zobgp
def work():
    with zobgp._lock:
        locked.set()
        time.sleep(.1)
locked, paths = threading.Event(), zobgp.paths({SAMPLE!r})
threading.Thread(target=work).start()
locked.wait()
child = os.fork()
if child:
    raise SystemExit(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))
zobgp.parse("standard", "1:2")
try: next(paths)
except zobgp.Error: raise SystemExit(5)"""
        # Python 3.12 and later warn of a fork beside a thread, which is what is tried here.
        quiet = [sys.executable, "-W", "ignore:This process:DeprecationWarning", "-c", program]
        run = subprocess.run(quiet, capture_output=True, text=True, timeout=60)
        self.assertEqual((run.returncode, run.stderr), (5, ""))

    def test_one_version(self):
        source = "".join(pathlib.Path("python", file).read_text() for file in ("pyproject.toml", "zobgp/__init__.py"))
        self.assertIn(f'version = "{zobgp.version()}"', source)
        self.assertIn(f'"libzobgp-c.so.{zobgp.version().rsplit(".", 1)[0]}"', source)

    def test_frames_where_pandas_is(self):
        try:
            import pandas  # noqa: F401
        except ImportError:
            self.skipTest("pandas is not installed")
        self.assertEqual(len(zobgp.paths(SAMPLE).to_pandas()), 9723)


unittest.main()
