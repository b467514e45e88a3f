"""The real program: started from its bundle as the desktop would start it."""

import os
import pathlib
import re
import signal
import subprocess

from . import processes

BUNDLE = "Orvalle.app"

# What a sanitizer or a library says when something is wrong in the program, whatever the exit status.
ALARMS = re.compile(r"AddressSanitizer|LeakSanitizer|runtime error:|-CRITICAL \*\*|\(process:\d+\): .*CRITICAL|"
                    r"terminate called|Assertion .* failed")
# GTK's list of files, read by an assistive program while it fills, answers for cells that have gone already.
GONE_CELLS = re.compile(
    r"(?:\s*\(orvalle:\d+\): Atk-CRITICAL .*: atk_state_set_contains_state: .*\n)+"
    r"\s*\(orvalle:\d+\): GLib-GObject-CRITICAL .*: g_object_unref: assertion 'G_IS_OBJECT \(object\)' failed")


def build_folder():
    """The folder of the build under test."""
    folder = os.environ.get("ORVALLE_BUILD_DIR")
    assert folder, "ORVALLE_BUILD_DIR must name the build folder, as ./test does"
    return pathlib.Path(folder)


def app_run():
    return build_folder() / BUNDLE / "AppRun"


class Program:
    """One start of the program in a desktop, for a user. Ended with the test at the latest."""

    def __init__(self, desktop, home, address=None, *arguments, environment=None, wrapper=(), bundle=None):
        self.desktop = desktop
        self.home = home
        self._number = len(list(desktop.logs.glob("orvalle-*")))
        self._log = desktop.logs / f"orvalle-{self._number}"
        variables = home.environment | inherited_options(bundle) | (environment or {})
        if address is not None:
            variables["ORVALLE_APP_URL"] = address
        self.process = processes.spawn([*wrapper, str(bundle / "AppRun" if bundle else app_run()), *arguments], variables, self._log)

    @property
    def pid(self):
        return self.process.pid

    def running(self):
        return self.process.poll() is None

    def log(self):
        """Everything that the program and its helpers have said."""
        return self._log.read_text(encoding="utf-8", errors="replace")

    def own_lines(self):
        """What the program has said for itself."""
        return [line for line in self.log().splitlines() if "Orvalle: " in line]

    def wait(self, seconds=40.0):
        """Waits for the program to end by itself; its exit status."""
        try:
            return self.process.wait(seconds)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"the program did not end within {seconds:g} s") from None

    def stop(self, sign=signal.SIGTERM):
        """Asks the program to end; it must do so in order and without complaint."""
        if self.running():
            self.process.send_signal(sign)
        status = self.wait()
        assert status == 0, f"exit status {status}:\n{self.log()}"
        self.check_log()

    def kill(self):
        """Ends the program in whatever state it is."""
        processes.end(self.process, seconds=15)

    def check_log(self):
        """Fails when the log has an alarm in it."""
        alarm = ALARMS.search(GONE_CELLS.sub("", self.log()))
        assert not alarm, f"in the log: {alarm.group()}\n{self.log()}"

    def web_processes(self):
        """The ids of the processes that run the page's script."""
        return [pid for pid, name in processes.children(self.pid).items() if name.startswith("WebKitWebProces")]


def inherited_options(bundle=""):
    """What the test command says to the sanitizers in the program of this bundle."""
    options = {name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}
    if '"' in str(bundle):
        # Asked about a path with quotation marks in it, the symbolizer does not answer, and is waited for without end.
        options["ASAN_OPTIONS"] = options.get("ASAN_OPTIONS", "") + ":symbolize=0"
    return options


def in_haste():
    """What the environment says to the sanitizers where speed is looked at: stacks need not be exact, and then leaks
    cannot be told from other people's."""
    options = inherited_options().get("ASAN_OPTIONS", "")
    return {"ASAN_OPTIONS": options + ":detect_leaks=0:fast_unwind_on_malloc=1:malloc_context_size=2"}


def without_overrides(command):
    """The command without root's power to ignore file permissions; for an ordinary user the command itself."""
    if os.geteuid() != 0:
        return command
    return ["setpriv", "--bounding-set=-dac_override,-dac_read_search,-fowner",
            "--inh-caps=-dac_override,-dac_read_search,-fowner", "--", *command]
