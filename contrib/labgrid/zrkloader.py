"""A labgrid driver that brings boards up with zrk-loader-cli."""

import contextlib
import json
import logging
import signal
import subprocess
import tempfile

import attr

from labgrid.binding import BindingState
from labgrid.driver import Driver, ExecutionError
from labgrid.factory import target_factory
from labgrid.protocol import PowerProtocol
from labgrid.resource import NetworkSerialPort
from labgrid.step import step
from labgrid.util.proxy import proxymanager

SPEED = 115200
SCHEMA = 2  # of the loader's events
SENDS = {  # the images of each step; the loader rejects those that no step uses
    "load": {"primary", "secondary"},
    "download": {"uboot", "rootfs", "kernel"},
    "check": {"secondary", "uboot", "rootfs", "kernel"},
    "flash": {"pg-sibl", "flash"},
}
PATIENCE = 10.0  # seconds that a loader gets to end after an interrupt


@attr.s(frozen=True)
class LoaderRun:
    """The results of a successful run."""

    console = attr.ib()  # the loader's console
    board = attr.ib()  # output of programs on the board, from steps that listen
    seconds = attr.ib()
    bytes = attr.ib()  # of images


def _texts(events, kind):
    return [event["text"] for event in events if event["event"] == kind]


@target_factory.reg_driver
@attr.s(eq=False)
class ZrkLoaderDriver(Driver):
    """Loads, starts and programs a board on a serial port, near or behind a serial server.

    Args:
        steps (list): words of zrk-loader-cli's steps, for example [load, start, expect, "login:"]
        images (dict): for options that name an image (primary, kernel, ...) an entry of the environment's
            images, with an address behind a comma if it needs one
        options (list): more of zrk-loader-cli's options
        timeout (float): seconds for a whole run

    With a driver of the PowerProtocol in the target, the power is cycled when the loader waits for that;
    without one, a person has to.
    """

    bindings = {"port": {"SerialPort", "NetworkSerialPort"}, "power": {PowerProtocol, None}}

    steps = attr.ib(
        default=attr.Factory(lambda: ["load", "start"]), validator=attr.validators.instance_of(list)
    )
    images = attr.ib(default=attr.Factory(dict), validator=attr.validators.instance_of(dict))
    options = attr.ib(default=attr.Factory(list), validator=attr.validators.instance_of(list))
    timeout = attr.ib(default=600.0, converter=float)

    def __attrs_post_init__(self):
        super().__attrs_post_init__()
        self.logger = logging.getLogger(self.display_name)

    @Driver.check_active
    @step(args=["steps"])
    def run(self, steps=None, options=None):
        """Runs the steps, those of the environment if none are given, and returns a LoaderRun.

        The options, too, are those of the environment unless others are given; the loader rejects an option
        that no step uses.

        Other drivers on the port, a SerialDriver mostly, are deactivated until the run ends. Raises
        ExecutionError with the reason when the board is not brought up.
        """
        command = self.command(steps or self.steps, options)
        self.logger.info("command: %s", command)
        with self._port_to_itself(), tempfile.TemporaryFile("w+", errors="replace") as remarks:
            try:
                process = subprocess.Popen(
                    command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=remarks,
                    encoding="utf-8", errors="replace",
                )
            except OSError as error:
                raise ExecutionError(
                    f"{command[0]}: {error.strerror}. Install the loader, or name it in the environment: "
                    "tools: {zrk-loader-cli: PATH}"
                ) from error
            with self._ended(process):
                events = self._follow(process.stdout)
            remarks.seek(0)
            return self._outcome(events, process.returncode, remarks.read().splitlines())

    def command(self, steps, options=None):
        """Returns the command that runs the steps."""
        config = self.target.env.config if self.target.env else None
        command = [(config and config.get_tool("zrk-loader-cli")) or "zrk-loader-cli", "--json"]
        command += ["--port", self._device(), "--timeout", f"{self.timeout:g}"]
        idle = set().union(*SENDS.values()) - set().union(*(SENDS.get(word, set()) for word in steps))
        for option, image in self.images.items():
            if option in idle:
                continue
            name, comma, address = str(image).partition(",")
            try:
                command += [f"--{option}", config.get_image_path(name) + comma + address]
            except (AttributeError, KeyError) as error:
                raise ExecutionError(
                    f"{option}: {name}: there is no such entry in the environment's images"
                ) from error
        return command + [str(option) for option in (self.options if options is None else options)] + ["--"] + [str(word) for word in steps]

    def _device(self):
        if self.port.speed != SPEED:
            raise ExecutionError(f"{self.port.display_name}: the boot ROM speaks {SPEED} baud, not {self.port.speed}")
        if not isinstance(self.port, NetworkSerialPort):
            return self.port.port
        if self.port.protocol not in ("raw", "rfc2217"):
            raise ExecutionError(f"{self.port.display_name}: the protocol {self.port.protocol} is unknown")
        host, port = proxymanager.get_host_and_port(self.port)
        scheme = "tcp" if self.port.protocol == "raw" else "rfc2217"
        return f"{scheme}:[{host}]:{port}" if ":" in host else f"{scheme}:{host}:{port}"

    @contextlib.contextmanager
    def _port_to_itself(self):
        others = [
            client for client in self.port.clients if client is not self and client.state is BindingState.active
        ]
        for other in others:
            self.target.deactivate(other)
        try:
            yield
        finally:
            for other in others:
                self.target.activate(other)

    @contextlib.contextmanager
    def _ended(self, process):
        """Ends the loader, whatever happens to the test."""
        try:
            yield
        except BaseException:
            process.send_signal(signal.SIGINT)
            raise
        finally:
            try:
                process.communicate(timeout=PATIENCE)
            except subprocess.TimeoutExpired:
                process.kill()
                process.communicate()

    def _follow(self, lines):
        events = []
        asked = False  # for the power, which is reported every second
        unfinished = ""
        for line in lines:
            event = json.loads(line)
            events.append(event)
            kind = event["event"]
            if kind == "begin" and event["schema"] != SCHEMA:
                raise ExecutionError(f"zrk-loader-cli prints events of schema {event['schema']}, not {SCHEMA}. Install the "
                                     "driver of the same version")
            if kind in ("console", "board"):
                *whole, unfinished = (unfinished + event["text"]).split("\n")
                self._log(whole)
            elif kind == "message":
                self._log(event["text"].split("\n"))
            elif kind in ("step", "progress"):
                asked = False
            elif kind == "wait" and event["what"] == "power_on" and not asked:
                asked = True
                self._cycle()
        return events

    def _log(self, lines):
        for line in filter(None, map(str.strip, lines)):
            self.logger.info("%s", line)

    def _cycle(self):
        if self.power is None:
            self.logger.warning("this target has no power driver: cycle the board's power by hand")
            return
        self.power.cycle()

    @staticmethod
    def _outcome(events, status, remarks):
        result = events[-1] if events and events[-1]["event"] == "result" else {}
        if status == 0 and result:
            return LoaderRun(
                "".join(_texts(events, "console")), "".join(_texts(events, "board")), result["seconds"], result["bytes"]
            )
        reason = result.get("reason", "ended without a result")
        where = f"in step {result['step']}, " if result.get("step") else ""
        why = result.get("text") or " ".join(remarks[-1:])
        raise ExecutionError(
            f"zrk-loader-cli: {reason} ({where}status {status}): {why}",
            stdout=[json.dumps(event) for event in events],
            stderr=remarks,
        )
