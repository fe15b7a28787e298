#!/usr/bin/env python3
"""orbelstatctl from outside: what it prints, writes and refuses, and that it shows what the reports
show. The argument is the directory of the build."""
import json, os, random, re, struct, subprocess, sys, tempfile, unittest

BUILD = os.path.abspath(os.environ.get("ORBEL_TEST_BUILD", sys.argv[1]))
del sys.argv[1:]
EMULATOR = os.environ.get("ORBEL_TEST_EMULATOR", "").split()
CODES = {"u8": "B", "u16": "H", "u32": "I", "u64": "Q", "i16": "h", "i32": "i", "time32": "I",
         "float": "f", "double": "d"}


class Companion(unittest.TestCase):
    def setUp(self):
        self.random = random.Random(1)
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = directory.name
        self.run_program("tolmfill", "--force")
        self.fields = [row.split("\t") for row in self.ctl("list")[0].splitlines()]
        self.sections = sorted({row[2] for row in self.fields})

    def run_program(self, program, *words, stdin="", shell="", **environment):
        settings = {"TOLM_SHM_DIR": self.directory, "TZ": "UTC", "RECORD": self.directory + "/calls",
                    "LD_PRELOAD": BUILD + "/librecorder.so", "UBSAN_OPTIONS": "exitcode=99",
                    "ASAN_OPTIONS": "verify_asan_link_order=0:exitcode=99", **environment}
        command = [*EMULATOR, f"{BUILD}/{program}", *words]
        if EMULATOR:  # for the program, not for the emulator
            given = [word for name in settings for word in ("-E", f"{name}={settings[name]}")]
            command[len(EMULATOR):len(EMULATOR)] = given
            settings = {}
        if shell:
            command = ["sh", "-c", f"{shell} exec \"$0\" \"$@\"", *command]
        result = subprocess.run(command, env={**os.environ, **settings}, input=stdin.encode("latin-1"),
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        return result.stdout.decode("latin-1"), result.stderr.decode("latin-1"), result.returncode

    def ctl(self, *words, status=0, **options):
        """Output, messages and recorded calls of a run that must end with the status."""
        calls = self.directory + "/calls"
        if os.path.exists(calls):
            os.remove(calls)
        out, err, ended = self.run_program("orbelstatctl", *words, **options)
        self.assertEqual(ended, status, (words, err))
        for line in err.splitlines():
            self.assertTrue(line.startswith("orbelstatctl: "), line)
        self.assertEqual(err == "", status == 0, err)
        if not os.path.exists(calls):
            return out, err, []
        with open(calls) as file:
            return out, err, file.read().splitlines()

    def section(self, number, directory=None):
        with open(f"{directory or self.directory}/section-{number}", "rb") as file:
            return file.read()

    def poke(self, number, offset, data):
        with open(f"{self.directory}/section-{number}", "r+b") as file:
            file.seek(offset)
            file.write(data)

    def shown(self):
        """All that the reports show, and what json does."""
        usage = self.run_program("orbelstatprobe", "-h")[0].replace("<index>", "3")
        reports = re.findall("^ +orbelstatprobe (-[^hw].*?)(?:  .*)?$", usage, re.M)
        return [self.run_program("orbelstatprobe", *words.split())[0] for words in reports], \
            self.ctl("json")[0]

    def size(self, kind):
        return int(kind[5:-1]) if kind.startswith("char") else struct.calcsize("<" + CODES[kind])

    def other_value(self, kind, old):
        if kind.startswith("char"):
            return bytes([old[0] ^ 1 or 2]) + old[1:]
        if kind in ("float", "double"):
            return struct.pack("<" + CODES[kind], struct.unpack("<" + CODES[kind], old)[0] + 2)
        return bytes([old[0] ^ 1, *old[1:-1], old[-1] ^ 0x10][:len(old)])

    def test_fields_are_those_that_the_reports_show(self):
        covered = {(row[2], int(row[3]) + i) for row in self.fields for i in range(self.size(row[1]))}
        hidden = [("", "char[1]", section, offset) for section in self.sections
                  for offset in range(len(self.section(section))) if (section, offset) not in covered]
        shown = [row for row in self.fields if "PowerOnReqPSyS" not in row[0]]  # has an offset only
        for rows, differs in ((hidden, False), (shown, True)):
            for path, kind, section, offset, *_ in self.random.sample(rows, 16):
                for unit in range(12):  # its type decides which of two voltages is shown
                    self.poke("7", 816 * unit + 9, bytes([1 if "VinDC" in path else 2]))
                before = self.shown()
                old = self.section(section)[int(offset):][:self.size(kind)]
                self.poke(section, int(offset), self.other_value(kind, old))
                reports, document = self.shown()
                self.assertEqual((reports != before[0], document != before[1]), (differs, differs),
                                 (path, section, offset))
                self.poke(section, int(offset), old)

    def test_list_get_and_json_tell_the_same(self):
        for section in self.sections:  # any bits: numbers that are none, texts without end
            data = bytearray(self.random.randbytes(len(self.section(section))))
            self.poke(section, 0, bytes(data))
        self.poke("7", 9792 + 3, b'"\\\x01\x7f\xff\n\t\0after')
        self.poke("6", 28917, struct.pack("<4d", 0.1, 1e-7, float("nan"), float("-inf")))
        values = {}
        document = json.loads(self.ctl("json")[0], parse_constant=self.fail)
        def collect(path, value):
            for key, inner in (value.items() if isinstance(value, dict) else enumerate(value)):
                below = f"{path}[{key}]" if isinstance(value, list) else f"{path}.{key}".lstrip(".")
                if isinstance(inner, (dict, list)):
                    collect(below, inner)
                else:
                    values[below] = inner
        collect("", document)
        self.assertEqual(list(values), [path for path, *_ in self.fields])
        self.assertEqual(values["psu[0].psuBus.deviceName"], '"\\\x01\x7f\xff\n\t')
        roots = dict.fromkeys(re.match(r"\w+", path)[0] for path, *_ in self.fields)
        lines = self.ctl("get", *roots)[0]
        for path, kind, section, offset, *_ in self.fields:
            data = self.section(section)[int(offset):][:self.size(kind)]
            start = lines.index(path + "=") + len(path) + 1
            if kind.startswith("char"):
                text = data.split(b"\0")[0].decode("latin-1")
                self.assertEqual(values[path], text)
                self.assertEqual(lines[start:start + len(text) + 1], text + "\n")
                continue
            text = lines[start:lines.index("\n", start)]
            number = struct.unpack("<" + CODES[kind], data)[0]
            if kind not in ("float", "double"):
                self.assertEqual((text, values[path]), (str(number), number), path)
            elif number - number == 0:
                self.assertEqual(struct.pack("<" + CODES[kind], float(text)), data, path)
                self.assertEqual(values[path], float(text), path)
            else:
                self.assertEqual((text.lstrip("-"), values[path]), (str(abs(number)), None), path)

    def test_get_prints_one_value_bare_and_others_as_assignments(self):
        self.assertEqual(self.ctl("get", "upm.cpuPwrThermal.dimmPwr[1]")[0], "12.75\n")
        for number in 0.1, 5e-324, 1e9, 123456.789:
            self.poke("6", 28917, struct.pack("<d", number))
            text = self.ctl("get", "upm.cpuPwrThermal.dimmPwr[0]")[0]
            self.assertEqual(text, {1e9: "1e+09"}.get(number, repr(number)) + "\n")
        self.assertEqual(self.ctl("get", "upm.policyState")[0].splitlines()[0],
                         "upm.policyState.policyUpdInx=8")
        self.assertEqual(self.ctl("get", "psu[3].psuBus.deviceName", "config.instHeadroom")[0],
                         "psu[3].psuBus.deviceName=/dev/psu-3\nconfig.instHeadroom=287\n")
        self.assertEqual(json.loads(self.ctl("json", "psu[3].inputOCW")[0]), [6.5, 6.75])
        self.assertEqual(self.ctl("json", "upm.policies[8].state")[0], "1\n")
        self.assertEqual(len(json.loads(self.ctl("json", "upm.policies")[0])), 16)

    def writable(self):
        """One element of every field that may be written, with its bounds."""
        rows = [row for row in self.fields if len(row) == 5]
        with open(os.path.dirname(__file__) + "/golden/wizard-bounds.txt") as file:
            by_wizard = re.findall(r"write 6 (\d+) (\d+): ", file.read())
        self.assertLessEqual(set(by_wizard), {(row[3], str(self.size(row[1]))) for row in rows})
        rows = list({re.sub(r"\[\d+\]", "", row[0]): row for row in rows}.values())
        self.assertEqual(len(rows), len(by_wizard))
        return rows

    def test_set_writes_up_to_every_bound_and_refuses_what_is_beyond(self):
        calls, at_bound, beyond = [], "", ""
        for path, kind, section, offset, bounds in self.writable():
            most = float(bounds.split("..")[1]) if kind == "double" else int(bounds.split("..")[1])
            data = struct.pack("<" + CODES[kind], most)
            at_bound += f"{path}={most}\n"
            beyond += f"{path}={most + 1}\n{path}=-1e10\n"
            calls.append(f"write 6 {offset} {len(data)}: {data.hex(' ')}")
        whole = "read 6 0 30277"
        out, _, recorded = self.ctl("set", "-", stdin=at_bound)
        self.assertEqual(recorded, [whole, *calls, whole])
        self.assertIn("upm.cpuPwrThermal.dimmPwr[3]: 13.25 -> 1e+09\n", out)
        self.assertIn("upm.policies[15].SFOffset: 10 -> 32767\n", out)
        self.assertEqual(out.count(" -> "), len(calls))
        _, err, recorded = self.ctl("set", "-", stdin=beyond, status=2)
        self.assertEqual(recorded, [])
        for number, line in enumerate(beyond.splitlines(), 1):
            self.assertIn(f"line {number}: {line}: ", err)

    def test_set_writes_nothing_if_anything_is_refused(self):
        good = "upm.policies[3].state=0"
        for bad in ("upm.policies[16].state=0", "upm.policies[3]=0", "upm.policies[3].stat=0",
                    "upm.timestamp=1", "upm.powerLimits.memPL1[0]=1", "reporting.peakHeadroom=1",
                    "=1", "upm.policies[3].state", good + " ", good + "\r", "--dry-run", "upm.policies[3].state=",
                    "upm.policies[3].state=+1", "upm.policies[3].state= 1",
                    "upm.policies[3].state=0x1", "upm.policies[3].state=-1",
                    "upm.policies[3].policyPowerLimit=99999999999999999999",
                    "upm.cpuPwrThermal.dimmPwr[0]=inf", "upm.cpuPwrThermal.dimmPwr[0]= 1",
                    "upm.cpuPwrThermal.dimmPwr[0]=1e400", "upm.cpuPwrThermal.dimmPwr[0]=1x", "upm.cpuPwrThermal.dimmPwr[0]=", "upm.policies[3].state.=1"):
            with self.subTest(bad):
                _, err, calls = self.ctl("set", good, bad, status=2)
                self.assertEqual(calls, [])
                self.assertIn(bad.rstrip("\r") + ": ", err)
        for text in ("", "\n", good + "\0\n", good + "\n\n" + good):
            self.assertEqual(self.ctl("set", "-", stdin=text, status=2)[2], [], text)
        self.assertEqual(self.ctl("set", "-", shell="exec <&-;", status=2)[2], [])
        self.assertEqual(self.ctl("set", "-", shell="exec </;", status=1)[2], [])

    def test_set_takes_back_what_get_printed(self):
        self.poke("6", 28917, b"\1\0\0\0\0\0\0\0")  # the least number that there is
        before = self.section("6")
        # The demo data, all of which the wizard would take.
        saved = self.ctl("get", *[row[0] for row in self.fields if len(row) == 5])[0]
        out, _, calls = self.ctl("set", "--dry-run", "upm.policies[3].state=0")
        self.assertEqual((out, calls), ("upm.policies[3].state: 1 -> 0\n", ["read 6 0 30277"]))
        self.ctl("set", "upm.policies[3].state=0", "upm.policies[3].state=1",
                 "upm.policies[3].state=0", "upm.cpuPwrThermal.dimmPwr[0]=-0.5")
        self.assertNotEqual(self.section("6"), before)
        self.ctl("set", "-", stdin=saved)
        self.assertEqual(self.section("6"), before)

    def test_set_tells_when_shared_memory_does_not_take_it(self):
        words = ["upm.policies[3].state=0", "upm.policies[4].state=0"]
        out, err, calls = self.ctl("set", *words, status=1, FAIL_WRITES="-5")
        self.assertEqual(out, "")
        self.assertIn("upm.policies[3].state: cannot be written, error -5", err)
        self.assertEqual([call[:12] for call in calls], ["read 6 0 302", "write 6 2924", "read 6 0 302"])
        err = self.ctl("set", *words, status=1, FAIL_WRITES="0")[1]  # taken, and forgotten
        self.assertEqual(err.count("does not read back"), 2)
        self.assertEqual(self.ctl("set", *words, status=1, FAIL_READ="1:-7")[2], ["read 6 0 30277"])
        self.assertIn("error -7", self.ctl("set", *words, status=1, FAIL_READ="2:-7")[1])

    def test_save_makes_files_that_the_stand_in_reads(self):
        directory = self.directory + "/saved"
        out = self.ctl("save", directory)[0]
        for section in self.sections:
            data = self.section(section)
            self.assertEqual(self.section(section, directory), data)
            self.assertIn(f"{directory}/section-{section}: {len(data)} bytes\n", out)
        self.poke("8", 0, b"changed!")
        err = self.ctl("save", directory, status=1, FAIL_READ="1:-7")[1]
        self.assertRegex(err, r"section \d+: cannot be read, error -7 ")
        self.assertEqual(self.section("8", directory), self.section("8"))
        self.assertEqual(sorted(os.listdir(directory)), sorted(f"section-{n}" for n in self.sections))
        full = "trap '' XFSZ; ulimit -f 40;"
        self.assertIn("section-6: File too large\n", self.ctl("save", directory, status=1, shell=full)[1])
        os.mkdir(directory + "/new")
        os.mkdir(directory + "/new/section-8")
        self.assertIn("section-8: Is a dir", self.ctl("save", directory + "/new", status=1)[1])
        self.assertEqual(sorted(os.listdir(directory + "/new")), sorted(f"section-{n}" for n in self.sections))
        self.ctl("save", "./" * 2044, status=1)
        self.ctl("save", self.directory + "/section-8", status=1)
        self.ctl("save", self.directory + "/no/directory", status=1)

    def test_wrong_usage_and_lost_output(self):
        for words in ([], ["frobnicate"], ["get"], ["get", "psu[12]"], ["get", ""], ["get", "glob"],
                      ["get", "upm.timestamp."], ["get", "upm.timestamp[0]"], ["get", "upm."],
                      ["get", "psu[3].psuBus.deviceName[0]"], ["json", "config.peakHeadroom.x"],
                      ["list", "upm.timestamp.x"],
                      ["get", "config.instHeadroom", "x"], ["list", "x"], ["list", "psu", "psu"],
                      ["json", "psu[0].x"], ["save"], ["set"], ["set", "--dry-run"], ["--help", "x"]):
            out, _, calls = self.ctl(*words, status=2)
            self.assertEqual((out, calls), ("", []), words)
        self.assertIn("save DIRECTORY", self.ctl("--help")[0])
        self.assertRegex(self.ctl("--version")[0], r"^orbelstatctl \d+\.\d+\n$")
        for words in ["json"], ["get", "psu"], ["get", "upm"]:
            self.assertIn("No space left", self.ctl(*words, shell="exec >/dev/full;", status=1)[1])
        self.assertIn("Bad file", self.ctl("list", shell="exec >&-;", status=1)[1])
        out = self.ctl("get", "config.instHeadroom", "upm.policyState.policyId", status=1, FAIL_READ="1:3")[0]
        self.assertEqual(out, "upm.policyState.policyId=8\n")
        self.assertEqual(self.ctl("json", status=1, FAIL_READ="2:3")[0], "")
        with open(BUILD + "/orbelstatctl", "rb") as file:
            if b"__asan_init" not in file.read():  # whose allocator refuses nothing
                for path, size in ("global", "803"), ("config", "224"):  # section, list of fields
                    self.assertIn("no memory", self.ctl("get", path, status=1, REFUSE=size)[1])


if __name__ == "__main__":
    unittest.main()
