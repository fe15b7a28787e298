"""Runs each test for every build that --builds names, with a sandbox of its own."""
import os
import tempfile

import pytest

pytest.register_assert_rewrite("harness")
from harness import Build, Sandbox  # noqa: E402


def pytest_addoption(parser):
    parser.addoption("--builds", default="release", help="names of directories in build/, or paths with a slash, "
                                                         "separated by commas")
    parser.addoption("--record", action="store_true", help="write the golden files from the output of the programs")


def pytest_configure(config):
    for name in ("CC", "CXX", "CFLAGS", "CXXFLAGS", "CPPFLAGS", "LDFLAGS"):  # for tests that configure a build
        os.environ.pop(name, None)
    if config.getoption("record") and config.getoption("numprocesses", None):
        raise pytest.UsageError("--record: without -n; tests that write one file at once lose entries of it")
    Sandbox.is_recording = config.getoption("record")
    config.builds = {name: Build(name) for name in config.getoption("builds").split(",")}


def pytest_generate_tests(metafunc):
    if "build" in metafunc.fixturenames:
        marker = metafunc.definition.get_closest_marker("builds")
        builds = [name for name, build in metafunc.config.builds.items() if not marker or marker.args[0](build)]
        metafunc.parametrize("build", builds, indirect=True, scope="session")


@pytest.fixture(scope="session")
def build(request):
    return request.config.builds[request.param]


@pytest.fixture
def sandbox(build):
    with tempfile.TemporaryDirectory(prefix="orbel-with-a-path-of-more-than-sixty-four-characters-") as directory:
        yield Sandbox(build, directory)
