"""The stand-in: its shared-memory library, called from here, and tolmfill."""
import ctypes
import errno
import fcntl
import os
import threading

import pytest
from harness import native


@pytest.fixture
def library(machine, monkeypatch):
    monkeypatch.setenv("TOLM_SHM_DIR", machine.directory)
    return ctypes.CDLL(str(machine.build.directory / "libtolmshm.so"))


@native
@pytest.mark.parametrize("section, offset, length, result", [
    (8, 0, 224, 0), (8, 223, 1, 0), (8, 224, 0, 0), (8, 224, 1, -errno.ERANGE), (8, 1, 224, -errno.ERANGE),
    (8, 2**31 - 1, 2**31 - 1, -errno.ERANGE), (8, -1, 1, -errno.EINVAL), (8, 0, -1, -errno.EINVAL),
    (1000, 0, 1, -errno.ENOENT)])
def test_copies_exactly_the_bytes_asked_for_or_none(machine, library, section, offset, length, result):
    copied = 0 if result else length
    machine.fill(0x11)
    buffer = ctypes.create_string_buffer(300 * b"\x22", 300)
    assert library.Tolm_shm_memread(section, buffer, offset, length) == result
    assert buffer.raw == copied * b"\x11" + (300 - copied) * b"\x22"
    buffer.raw = 300 * b"\x33"
    assert library.Tolm_shm_memwrite(section, buffer, offset, length) == result
    expected = bytearray(224 * b"\x11")
    if copied:
        expected[offset:offset + copied] = copied * b"\x33"
    assert machine.contents(8) == expected


@native
def test_uses_regular_files_only(machine, library):
    """What is none is refused, at once and untouched."""
    link = machine.path(8)
    target = link.rename(machine.directory + "/somebodys-file")
    link.symlink_to(target)
    os.mkfifo(machine.path(1))
    machine.path(2).mkdir()
    byte = ctypes.create_string_buffer(b"\x44", 1)
    for section, reason in (8, errno.ELOOP), (1, errno.ENXIO), (2, errno.EISDIR):
        assert library.Tolm_shm_memread(section, byte, 0, 1) == -reason
        assert library.Tolm_shm_memwrite(section, byte, 0, 1) == -reason
    assert machine.run("--force", program="tolmfill").status == 1
    assert link.is_symlink()
    assert target.read_bytes() == bytes(224)


@native
@pytest.mark.parametrize("lock, function, waits", [
    (fcntl.LOCK_EX, "memread", True), (fcntl.LOCK_SH, "memwrite", True), (fcntl.LOCK_SH, "memread", False)])
def test_waits_for_other_users_of_a_section(machine, library, lock, function, waits):
    buffer = ctypes.create_string_buffer(224)
    caller = threading.Thread(target=library["Tolm_shm_" + function], args=(8, buffer, 0, 224))
    with open(machine.path(8), "rb") as file:
        fcntl.flock(file, lock)
        caller.start()
        caller.join(0.2 if waits else 60)
        was_waiting = caller.is_alive()
    caller.join()
    assert was_waiting == waits


def tolmfill(machine, *words):
    return machine.run(*words, program="tolmfill")


def test_tolmfill_leaves_existing_sections_alone(machine):
    machine.path(7).unlink()
    assert tolmfill(machine).status == 2
    assert (len(machine.contents(7)), machine.contents(8)) == (10212, bytes(224))
    assert tolmfill(machine, "--force").status == tolmfill(machine, "--check").status == 0
    assert machine.contents(8) != bytes(224)


def test_tolmfill_checks_that_sections_are_there_and_of_their_size(machine):
    outcome = tolmfill(machine, "--check")
    assert (outcome.status, outcome.out) == (0, "")
    machine.path(6).unlink()
    os.truncate(machine.path(8), 223)
    outcome = tolmfill(machine, "--check")
    errors = f"{machine.path(6)}: No such file or directory\n{machine.path(8)}: 223 bytes, not 224\n"
    assert (outcome.status, outcome.out) == (1, errors)


@pytest.mark.parametrize("directory", ["", None])
def test_no_directory_is_the_default_one(machine, directory):
    machine.environment["TOLM_SHM_DIR"] = "/dev/shm/tolm"
    default = tolmfill(machine, "--check")
    machine.environment["TOLM_SHM_DIR"] = directory
    assert tolmfill(machine, "--check") == default


@pytest.mark.parametrize("words", ["--frobnicate", "--force --check", "section-8"])
def test_tolmfill_refuses_wrong_usage(machine, words):
    assert tolmfill(machine, *words.split()).status == 1
    assert machine.contents(8) == bytes(224)
