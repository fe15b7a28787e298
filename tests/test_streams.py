"""Closed and unwritable standard streams, and the order in which output appears."""
import socket
import subprocess

import pytest
from harness import golden, lines_of

LOST = "orbelstatprobe: standard output: "
CLOSED = "orbelstatprobe: standard output is closed, and /dev/null cannot take its place: "
DENIED = CLOSED + "Permission denied\n"
FULL = LOST + "No space left on device\n"


@pytest.mark.parametrize("closed", [">&-", "2>&-", ">&- 2>&-", "<&- >&- 2>&-"])
def test_closed_streams_do_not_lead_into_a_section(sandbox, closed):
    """A platform library that keeps its section open must not get standard output's place."""
    sandbox.fill_with_pattern()
    sandbox.environment["KEEP_OPEN"] = sandbox.path(6)
    status = sandbox.run("-r", redirections=f"exec {closed};").status
    sandbox.run("-x", redirections=f"exec {closed};")  # getopt complains on standard error
    assert sandbox.contents(6) == sandbox.build.pattern[6]
    assert status == (0 if closed == "2>&-" else 74)


@pytest.mark.parametrize("closed, failures, failing, err, reads, status", [
    ("<&-", 3, "", "", 1, 0), (">&-", 3, "", DENIED, 0, 74), ("<&- >&-", 3, "", DENIED, 0, 74), ("2>&-", 3, "", "", 0, 74),
    # Standard input stays closed, and the next file that is opened gets its number.
    ("<&- >&-", 1, "", LOST + "Bad file descriptor\n", 1, 74), ("<&- >&-", 1, "dup2", CLOSED + "Input/output error\n", 0, 74)])
def test_without_the_null_device_output_must_be_open(sandbox, closed, failures, failing, err, reads, status):
    """If it would be lost, nothing is read and the reason is given."""
    sandbox.environment |= {"FAIL_OPEN_NULL": failures, "FAIL_CALL": failing}
    outcome = sandbox.run("-c", redirections=f"exec {closed};")
    assert (outcome.err, len(outcome.calls), outcome.status, outcome.out != "") == (err, reads, status, status == 0)


def test_both_streams_keep_their_order(sandbox):
    usage = golden("usage.txt")
    out = sandbox.run("-h", "-x", redirections="exec 2>&1;").out
    assert out == f"{usage}{sandbox.build.program}: invalid option -- 'x'\n{usage}"


def test_a_unit_is_out_before_the_next_is_read(sandbox):
    lines = lines_of(sandbox.run("-e").out)
    sandbox.environment["END_AT_CALL"] = "5"  # of the third unit
    assert sandbox.run("-e").out == "".join(lines[:len(lines) // 12 * 2])


def test_a_terminal_shows_lines_at_once(sandbox):
    heading = sandbox.run("-u", "-p", "3").out.partition(" POLICY-3")[0]
    sandbox.environment["END_AT_CALL"] = "2"  # of the library, which is asked for the name
    assert sandbox.run_on_terminal("-u", "-p", "3").out == heading


@pytest.mark.parametrize("arguments, stream, err, status", [
    ("-e", "/dev/full", FULL, 74), ("-c", "/dev/full", FULL, 74), ("-u -x", "/dev/full", FULL, 1),
    ("-w", "/dev/full", FULL, 255), ("-w -u -m", "/dev/full", FULL, 255),
    ("-c", "&-", LOST + "Bad file descriptor\n", 74),
    ("-w -u -p 3 -s 1", "/dev/full", "", 0), ("-w -u -p 3 -s 1", "&-", "", 0)])
def test_output_errors_are_reported(sandbox, arguments, stream, err, status):
    outcome = sandbox.run(*arguments.split(), redirections=f"exec >{stream};")
    assert (outcome.err, outcome.status) == (err, status)


def test_a_failed_close_is_reported(sandbox):
    sandbox.environment["FAIL_CALL"] = "fclose"
    outcome = sandbox.run("-c")
    assert (outcome.err, outcome.status) == (LOST + "Input/output error\n", 74)


@pytest.mark.parametrize("program, arguments, count", [
    ("orbelstatprobe", ["-c"], 1), ("orbelstatctl", ["get", "nothing", "upm.nothing"], 2)])
def test_each_message_is_written_at_once(sandbox, program, arguments, count):
    """Otherwise messages of other programs may come in between."""
    ours, theirs = socket.socketpair(type=socket.SOCK_SEQPACKET)
    with ours, theirs:
        subprocess.run(sandbox.command(program, arguments, "exec >/dev/full;"), stderr=theirs)
        theirs.close()
        messages = list(iter(lambda: ours.recv(4096).decode(), ""))
    assert [message.count("\n") for message in messages] == count * [1]
    assert all(message.startswith(program + ": ") and message.endswith("\n") for message in messages)
