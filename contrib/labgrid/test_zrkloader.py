"""Brings the simulated board up inside labgrid, near and behind ser2net.

Started by the script `test` beside it, which says where the programs are.
"""

import contextlib
import os
import pathlib
import socket
import subprocess
import time

import pytest
import yaml

from labgrid import Environment
from labgrid.driver import ExecutionError
from labgrid.resource import NetworkSerialPort

HERE = pathlib.Path(__file__).parent
PROGRAMS = pathlib.Path(os.environ["ZRK_PROGRAMS"])
FAR = {"raw": "tcp", "rfc2217": "telnet(rfc2217,mode=server),tcp"}
LIMIT = 600  # seconds; only a fault lasts that long


class Bench:
    """A board whose power only the target cycles, and an environment like the example's."""

    def __init__(self, folder, *board_options):
        self.folder = folder
        self.link = folder / "board"
        subprocess.run([PROGRAMS / "zrk-board", "--make-images", folder / "boot"], check=True)
        self.processes = []
        command = [PROGRAMS / "zrk-board", "--link", self.link, "--off", "--patience", "0", *board_options]
        self.board = self.start(command, stdout=subprocess.PIPE)
        self.board.stdout.readline()
        (folder / "cycle").write_text(f"#!/bin/sh\necho cycled >>{folder}/cycles\nkill -USR1 {self.board.pid}\n")
        (folder / "cycle").chmod(0o755)
        self.config = yaml.safe_load((HERE / "example.yaml").read_text())
        self.config["targets"]["main"]["resources"]["RawSerialPort"]["port"] = str(self.link)
        self.drivers["ExternalPowerDriver"]["cmd_cycle"] = str(folder / "cycle")
        self.drivers["ZrkLoaderDriver"].update(timeout=LIMIT, options=["--wait", LIMIT, "--expect-timeout", LIMIT])
        self.config["imports"] = ["zrkloader"]  # as a file, each test would register it again
        self.config["tools"]["zrk-loader-cli"] = str(PROGRAMS / "zrk-loader-cli")
        self.target = None

    @property
    def drivers(self):
        return self.config["targets"]["main"]["drivers"]

    def start(self, command, **streams):
        self.processes.append(subprocess.Popen([str(word) for word in command], text=True, **streams))
        return self.processes[-1]

    def serve(self, protocol):
        """Puts ser2net in front of the board, which labgrid then sees as a NetworkSerialPort."""
        with socket.create_server(("127.0.0.1", 0)) as free:
            port = free.getsockname()[1]
        self.start([
            "ser2net", "-d", "-n", "-u",
            "-Y", f"connection: &board#  accepter: {FAR[protocol]},127.0.0.1,{port}",
            "-Y", f"  connector: serialdev(nouucplock=true),{self.link},115200n81,local",
        ])
        end = time.monotonic() + LIMIT
        while b"%04X" % port not in b"".join(
            line for line in pathlib.Path("/proc/net/tcp").read_bytes().splitlines() if b" 0A " in line
        ):  # a test connection would take the port from the loader
            assert time.monotonic() < end and self.processes[-1].poll() is None, "ser2net does not listen"
            time.sleep(0.05)
        self.config["targets"]["main"]["resources"] = {
            "NetworkSerialPort": {"host": "127.0.0.1", "port": port, "protocol": protocol}
        }

    def driver(self, name="ZrkLoaderDriver"):
        if self.target is None:
            path = self.folder / "env.yaml"
            path.write_text(yaml.safe_dump(self.config))
            self.target = Environment(str(path)).get_target()
        return self.target.get_driver(name)

    def cycles(self):
        path = self.folder / "cycles"
        return len(path.read_text().split()) if path.exists() else 0

    def stop(self):
        if self.target:
            self.target.cleanup()
        for process in reversed(self.processes):
            process.terminate()
            process.wait()


def is_loader_on(path, link):
    with contextlib.suppress(OSError):
        words = path.read_bytes().split(b"\0")
        return words[0].endswith(b"zrk-loader-cli") and str(link).encode() in words
    return False


@pytest.fixture
def bench(tmp_path):
    benches = []

    def make(*board_options):
        benches.append(Bench(tmp_path, *board_options))
        return benches[-1]

    yield make
    for made in benches:
        made.stop()


@pytest.mark.parametrize("protocol", [None, *FAR])
def test_brings_a_board_up_and_gives_the_port_back(bench, protocol):
    """In two runs, to see what the first leaves on the line; each load cycles the power once."""
    here = bench("--baud", "1152000", "--power-on-delay", "1.5")
    here.drivers["ZrkLoaderDriver"]["options"] += ["--line-rate", 115200]
    if protocol:
        here.serve(protocol)
    console = here.driver("SerialDriver")
    images = sum((here.folder / "boot" / name).stat().st_size for name in ("primary.bin", "secondary.bin"))
    start = ["start", "expect", "zrk>"]
    for steps, loads, cycles in ((None, 1, 1), (["load", "load", *start], 2, 3)):
        run = here.driver().run(steps)
        assert run.board.endswith("zrk>") and "Type help" in run.board
        assert run.console.endswith("-- Starting Secondary Executable --\r\n")
        assert run.bytes == loads * images
        assert here.cycles() == cycles
        console.sendline("printenv")  # the console is labgrid's again
        console.expect("zrk>", timeout=LIMIT)


@pytest.mark.parametrize(
    "board, change, reason",
    [
        (["--fault", "accept=refuse"], {}, r"refused \(in step load, status 5\)"),
        (["--fault", "bootid=none"], {"options": ["--wait", 1]}, r"limit_reached \(in step load, status 4\): --wait ran out"),
        ([], {"steps": ["load", "start", "expect", "login:"], "options": ["--expect-timeout", 1]}, r"step expect, status 7\)"),
        ([], {"images": {"primary": "nosuch"}}, "primary: nosuch: there is no such entry in the environment's images"),
        ([], {"images": {"primry": "primary"}}, "usage .*primry"),
        ([], {"images": {}}, "usage .*status 2.*--primary FILE"),
    ],
)
def test_failures_have_a_reason_and_release_the_port(bench, board, change, reason):
    here = bench(*board)
    here.drivers["ZrkLoaderDriver"].update(change)
    console = here.driver("SerialDriver")
    with pytest.raises(ExecutionError, match=f"(?s){reason}"):
        here.driver().run()
    assert console.state.name == "active"


def test_a_power_switch_that_fails_ends_the_loader(bench):
    here = bench()
    here.drivers["ExternalPowerDriver"]["cmd_cycle"] = "false"
    with pytest.raises(subprocess.CalledProcessError):
        here.driver().run()
    left = [path for path in pathlib.Path("/proc").glob("[0-9]*/cmdline") if is_loader_on(path, here.link)]
    assert left == []


def test_a_missing_loader_and_a_wrong_speed_are_told(bench):
    here = bench()
    here.config["tools"]["zrk-loader-cli"] = "/nonexistent/zrk-loader-cli"
    with pytest.raises(ExecutionError, match="Install the loader, or name it in the environment"):
        here.driver().run()
    here.driver().port.speed = 9600
    with pytest.raises(ExecutionError, match="speaks 115200 baud, not 9600"):
        here.driver().run()


def test_a_server_on_ipv6_gets_brackets(bench):
    here = bench()
    here.config["targets"]["main"]["resources"] = {"NetworkSerialPort": {"host": "[::1]", "port": 4001, "protocol": "raw"}}
    del here.drivers["SerialDriver"]
    assert isinstance(here.driver().port, NetworkSerialPort)
    assert "tcp:[::1]:4001" in here.driver().command(["load"])
