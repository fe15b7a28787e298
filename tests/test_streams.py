"""Closed standard streams, and how output is written."""
import socket
import subprocess

import pytest


@pytest.mark.parametrize("closed", [">&-", "2>&-", ">&- 2>&-", "<&- >&- 2>&-"])
def test_closed_streams_do_not_lead_into_a_section(sandbox, closed):
    """A platform library that keeps its section open must not get standard output's place."""
    sandbox.fill_with_pattern()
    sandbox.environment["KEEP_OPEN"] = sandbox.path(6)
    status = sandbox.run("-r", redirections=f"exec {closed};").status
    sandbox.run("-x", redirections=f"exec {closed};")  # getopt complains on standard error
    assert sandbox.contents(6) == sandbox.build.pattern[6]
    assert status == (0 if closed == "2>&-" else 74)


def test_a_terminal_shows_lines_at_once(sandbox):
    heading = sandbox.run("-u", "-p", "3").out.partition(" POLICY-3")[0]
    sandbox.environment["END_AT_CALL"] = "2"  # of the library, which is asked for the name
    assert sandbox.run_on_terminal("-u", "-p", "3").out == heading


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
