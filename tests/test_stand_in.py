"""The stand-in: its shared-memory library, called from here, its policy names, and tolmfill."""
import ctypes
import errno
import fcntl
import os
import pathlib
import re
import resource
import subprocess
import threading

import pytest
from harness import compare_with_golden, native


@pytest.fixture
def library(sandbox, monkeypatch):
    monkeypatch.setenv("TOLM_SHM_DIR", sandbox.directory)
    return ctypes.CDLL(str(sandbox.build.directory / "libtolmshm.so"))


def tolmfill(sandbox, *words, **options):
    return sandbox.run(*words, program="tolmfill", **options)


@native
@pytest.mark.parametrize("section, offset, length, result", [
    (8, 0, 224, 0), (8, 223, 1, 0), (8, 224, 0, 0), (8, 224, 1, -errno.ERANGE), (8, 1, 224, -errno.ERANGE),
    (8, 2**31 - 1, 2**31 - 1, -errno.ERANGE), (8, -1, 1, -errno.EINVAL), (8, 0, -1, -errno.EINVAL),
    (1000, 0, 1, -errno.ENOENT)])
def test_copies_exactly_the_bytes_asked_for_or_none(sandbox, library, section, offset, length, result):
    copied = 0 if result else length
    sandbox.fill(0x11)
    buffer = ctypes.create_string_buffer(300 * b"\x22", 300)
    assert library.Tolm_shm_memread(section, buffer, offset, length) == result
    assert buffer.raw == copied * b"\x11" + (300 - copied) * b"\x22"
    buffer.raw = 300 * b"\x33"
    assert library.Tolm_shm_memwrite(section, buffer, offset, length) == result
    expected = bytearray(224 * b"\x11")
    expected[offset:offset + copied] = copied * b"\x33"
    assert sandbox.contents(8) == expected


@native
def test_a_short_write_is_an_error(library):
    limits = resource.getrlimit(resource.RLIMIT_FSIZE)
    resource.setrlimit(resource.RLIMIT_FSIZE, (100, limits[1]))
    result = library.Tolm_shm_memwrite(8, bytes(224), 0, 224)
    resource.setrlimit(resource.RLIMIT_FSIZE, limits)
    assert result == -errno.EIO


@native
def test_uses_regular_files_only(sandbox, library):
    """Anything else is rejected immediately and left untouched; so is a write to a file without write permission,
    even by root."""
    link = sandbox.path(8)
    target = link.rename(sandbox.directory + "/target")
    link.symlink_to(target)
    os.mkfifo(sandbox.path(1))
    sandbox.path(2).mkdir()
    sandbox.path(7).chmod(0o444)
    byte = ctypes.create_string_buffer(b"\x44", 1)
    for section, reading, writing in ((8, errno.ELOOP, errno.ELOOP), (1, errno.ENXIO, errno.ENXIO),
                                      (2, errno.EISDIR, errno.EISDIR), (7, 0, errno.EACCES)):
        assert library.Tolm_shm_memread(section, byte, 0, 1) == -reading
        assert library.Tolm_shm_memwrite(section, byte, 0, 1) == -writing
    assert tolmfill(sandbox, "--force").status == 1
    assert link.is_symlink() and target.read_bytes() == bytes(224)
    assert not any(sandbox.contents(7))


def wait_for_lock(path, is_running):
    """Waits until a caller waits for the lock of a file or has ended. Returns whether it still runs."""
    while is_running() and not re.search(f"-> .*:{path.stat().st_ino} ", pathlib.Path("/proc/locks").read_text()):
        pass
    return is_running()


@native
@pytest.mark.parametrize("lock, function, waits", [
    (fcntl.LOCK_EX, "memread", True), (fcntl.LOCK_SH, "memwrite", True), (fcntl.LOCK_SH, "memread", False)])
def test_waits_for_other_users_of_a_section(sandbox, library, lock, function, waits):
    """The size of the file counts once the lock is held. Other programs do not inherit the descriptor."""
    path, results = sandbox.path(8), []
    call = library["Tolm_shm_" + function]
    caller = threading.Thread(target=lambda: results.append(call(8, ctypes.create_string_buffer(224), 0, 224)))
    with open(path, "rb") as file:
        fcntl.flock(file, lock)
        caller.start()
        assert wait_for_lock(path, caller.is_alive) == waits
        descriptors = [int(fd) for fd in os.listdir("/proc/self/fd")
                       if os.path.realpath("/proc/self/fd/" + fd) == str(path)]
        assert (len(descriptors), any(map(os.get_inheritable, descriptors))) == (1 + waits, False)
        os.truncate(path, 223)
    caller.join()
    assert results == [-errno.ERANGE if waits else 0]


def test_tolmfill_overwrites_under_the_lock(sandbox):
    with open(sandbox.path(8), "rb") as file:
        fcntl.flock(file, fcntl.LOCK_SH)
        process = subprocess.Popen(sandbox.command("tolmfill", ["--force"], ""), stdout=subprocess.DEVNULL)
        assert wait_for_lock(sandbox.path(8), lambda: process.poll() is None)
        assert sandbox.contents(8) == bytes(224)
    assert (process.wait(), sandbox.contents(8) == bytes(224)) == (0, False)


NAMES = [rf"\t\\\n\x7f\xe9 {policy}" + "\n" for policy in range(16)]


@pytest.mark.parametrize("lines", [NAMES, None, [], NAMES[1:], [*NAMES, "17\n"], *(
    [*NAMES[1:], line] for line in ("no newline", "\\q\n", "\\x4\n", "\\\n"))])
def test_policy_names(sandbox, lines):
    """They come from a valid file in the directory of the sections, or else are built in."""
    if lines is not None:
        pathlib.Path(sandbox.directory, "policy-names").write_text("".join(lines))
    sandbox.environment["LD_PRELOAD"] = None  # the recorder has names of its own
    names = sandbox.run("get", "-n", "upm.policies[*].name", program="orbelstatctl").out
    if lines == NAMES:
        assert names == "".join(lines)
    else:
        compare_with_golden("policy-names.txt", " ".join(names.split()) + "\n")


def test_tolmfill_leaves_existing_sections_alone(sandbox):
    sandbox.path(8).unlink()  # the last one; the status is that of all
    assert tolmfill(sandbox).status == 2
    assert (sandbox.contents(7), len(sandbox.contents(8))) == (bytes(10212), 224)
    sandbox.poke(7, 10212, b"too long")
    assert tolmfill(sandbox, "--force").status == tolmfill(sandbox, "--check").status == 0
    assert sandbox.contents(7) != bytes(10212)


@pytest.mark.builds(lambda build: "-fprofile" not in build.flags)  # profiles exceed the limit
def test_tolmfill_creates_complete_sections(sandbox):
    """With the permissions that the umask leaves, and the sticky bit."""
    new = pathlib.Path(sandbox.directory, "new")
    sandbox.environment["TOLM_SHM_DIR"] = new
    for _ in range(2):  # there are too few blocks for section 6; the other sections exist then
        assert tolmfill(sandbox, redirections="umask 027; ulimit -f 40;").status == 1
    assert {file.name: f"{file.stat().st_mode:o}" for file in new.iterdir()} == {
        f"section-{section}": "100640" for section in sandbox.build.sizes if section != 6}
    assert f"{new.stat().st_mode:o}" == "41750"


def test_tolmfill_checks_that_sections_are_there_and_of_their_size(sandbox):
    assert tolmfill(sandbox, "--check").out == ""
    os.truncate(sandbox.path(39), 802)
    sandbox.path(6).unlink()
    outcome = tolmfill(sandbox, "--check")
    assert outcome.status == 1
    assert re.fullmatch(f"{sandbox.path(39)}: .*802.*803.*\n{sandbox.path(6)}: No such file .*\n", outcome.out)


@pytest.mark.parametrize("directory", ["", None])
def test_unset_or_empty_directory_means_default(sandbox, directory):
    sandbox.environment["TOLM_SHM_DIR"] = "/dev/shm/tolm"
    default = tolmfill(sandbox, "--check")
    sandbox.environment["TOLM_SHM_DIR"] = directory
    assert tolmfill(sandbox, "--check") == default


@pytest.mark.parametrize("words", ["--frobnicate", "--force --check", "section-8"])
def test_tolmfill_refuses_wrong_usage(sandbox, words):
    assert tolmfill(sandbox, *words.split()).status == 1
    assert sandbox.contents(8) == bytes(224)
