"""Runs each test for every build that --builds names, and gives it a sandbox of its own."""
import tempfile

import pytest

pytest.register_assert_rewrite("harness")
from harness import Build, Sandbox  # noqa: E402


def pytest_addoption(parser):
    parser.addoption("--builds", default="release", help="directories in build/, separated by commas")
    parser.addoption("--record", action="store_true", help="write the files in golden/ anew")


def pytest_configure(config):
    if config.getoption("record") and config.getoption("numprocesses", None):
        raise pytest.UsageError("--record: without -n; tests that write one file at once lose entries of it")
    Sandbox.is_recording = config.getoption("record")


def pytest_generate_tests(metafunc):
    if "build" in metafunc.fixturenames:
        builds = metafunc.config.getoption("builds").split(",")
        marker = metafunc.definition.get_closest_marker("builds")
        if marker:
            builds = [build for build in builds if build in marker.args]
        metafunc.parametrize("build", builds, indirect=True, scope="session")


@pytest.fixture(scope="session")
def build(request):
    return Build(request.param)


@pytest.fixture
def sandbox(build):
    with tempfile.TemporaryDirectory(prefix="orbel-") as directory:
        yield Sandbox(build, directory)
