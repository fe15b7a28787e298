"""The stand-in: its shared-memory library, called from here, and tolmfill."""
import ctypes
import errno
import fcntl
import os
import threading

import pytest
from harness import native


@pytest.fixture
def library(sandbox, monkeypatch):
    monkeypatch.setenv("TOLM_SHM_DIR", sandbox.directory)
    return ctypes.CDLL(str(sandbox.build.directory / "libtolmshm.so"))


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
    if copied:
        expected[offset:offset + copied] = copied * b"\x33"
    assert sandbox.contents(8) == expected


@native
def test_uses_regular_files_only(sandbox, library):
    """What is none is refused, at once and untouched."""
    link = sandbox.path(8)
    target = link.rename(sandbox.directory + "/somebodys-file")
    link.symlink_to(target)
    os.mkfifo(sandbox.path(1))
    sandbox.path(2).mkdir()
    byte = ctypes.create_string_buffer(b"\x44", 1)
    for section, reason in (8, errno.ELOOP), (1, errno.ENXIO), (2, errno.EISDIR):
        assert library.Tolm_shm_memread(section, byte, 0, 1) == -reason
        assert library.Tolm_shm_memwrite(section, byte, 0, 1) == -reason
    assert sandbox.run("--force", program="tolmfill").status == 1
    assert link.is_symlink()
    assert target.read_bytes() == bytes(224)


@native
@pytest.mark.parametrize("lock, function, waits", [
    (fcntl.LOCK_EX, "memread", True), (fcntl.LOCK_SH, "memwrite", True), (fcntl.LOCK_SH, "memread", False)])
def test_waits_for_other_users_of_a_section(sandbox, library, lock, function, waits):
    buffer = ctypes.create_string_buffer(224)
    caller = threading.Thread(target=library["Tolm_shm_" + function], args=(8, buffer, 0, 224))
    with open(sandbox.path(8), "rb") as file:
        fcntl.flock(file, lock)
        caller.start()
        caller.join(0.2 if waits else 60)
        was_waiting = caller.is_alive()
    caller.join()
    assert was_waiting == waits


def tolmfill(sandbox, *words):
    return sandbox.run(*words, program="tolmfill")


def test_tolmfill_leaves_existing_sections_alone(sandbox):
    sandbox.path(7).unlink()
    assert tolmfill(sandbox).status == 2
    assert (len(sandbox.contents(7)), sandbox.contents(8)) == (10212, bytes(224))
    assert tolmfill(sandbox, "--force").status == tolmfill(sandbox, "--check").status == 0
    assert sandbox.contents(8) != bytes(224)


def test_tolmfill_checks_that_sections_are_there_and_of_their_size(sandbox):
    outcome = tolmfill(sandbox, "--check")
    assert (outcome.status, outcome.out) == (0, "")
    sandbox.path(6).unlink()
    os.truncate(sandbox.path(8), 223)
    outcome = tolmfill(sandbox, "--check")
    errors = f"{sandbox.path(6)}: No such file or directory\n{sandbox.path(8)}: 223 bytes, not 224\n"
    assert (outcome.status, outcome.out) == (1, errors)


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
