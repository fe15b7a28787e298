"""A run whose standard streams are closed or cannot be written, and what is out when."""
import pytest
from harness import golden, lines_of

LOST = "orbelstatprobe: standard output: "
CLOSED = "orbelstatprobe: standard output is closed, and /dev/null cannot take its place: Permission denied\n"
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


@pytest.mark.parametrize("closed, failures, err, reads, status", [
    ("<&-", 3, "", 1, 0), (">&-", 3, CLOSED, 0, 74), ("<&- >&-", 3, CLOSED, 0, 74), ("2>&-", 3, "", 0, 74),
    # Standard input stays closed, and what opens next gets its number.
    ("<&- >&-", 1, LOST + "Bad file descriptor\n", 1, 74)])
def test_without_the_null_device_output_must_be_open(sandbox, closed, failures, err, reads, status):
    """If it would be lost, nothing is read and the reason is given."""
    sandbox.environment["FAIL_OPEN_NULL"] = failures
    outcome = sandbox.run("-c", redirections=f"exec {closed};")
    assert (outcome.err, len(outcome.calls), outcome.status, outcome.out != "") == (err, reads, status, status == 0)


def test_both_streams_keep_their_order(sandbox):
    usage = golden("usage.txt")
    out = sandbox.run("-h", "-x", redirections="exec 2>&1;").out
    assert out == f"{usage}{sandbox.build.program}: invalid option -- 'x'\n{usage}"


def test_a_unit_is_out_before_the_next_is_read(sandbox):
    lines = lines_of(sandbox.run("-e").out)
    sandbox.environment["END_AT_READ"] = "5"  # of the third unit
    assert sandbox.run("-e").out == "".join(lines[:len(lines) // 12 * 2])


@pytest.mark.parametrize("arguments, stream, err, status", [
    ("-e", "/dev/full", FULL, 74), ("-c", "/dev/full", FULL, 74), ("-u -x", "/dev/full", FULL, 1),
    ("-w", "/dev/full", FULL, 255), ("-w -u -m", "/dev/full", FULL, 255),
    ("-c", "&-", LOST + "Bad file descriptor\n", 74),
    ("-w -u -p 3 -s 1", "/dev/full", "", 0), ("-w -u -p 3 -s 1", "&-", "", 0)])
def test_output_errors_are_reported(sandbox, arguments, stream, err, status):
    outcome = sandbox.run(*arguments.split(), redirections=f"exec >{stream};")
    assert (outcome.err, outcome.status) == (err, status)
