"""A private desktop session: display, window manager, bus, and on request a compositor and a panel with a tray."""

import os
import pathlib
import secrets
import shutil
import struct
import subprocess
import tempfile

from . import processes
from .locales import private_locale
from .windows import Hand, Windows

BUS_CONFIG = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <keep_umask/>
  <listen>unix:path={socket}</listen>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_incoming_bytes">1000000000</limit>
  <limit name="max_outgoing_bytes">1000000000</limit>
  <limit name="max_message_size">1000000000</limit>
  <limit name="max_match_rules_per_connection">50000</limit>
</busconfig>
"""

# No key of the window manager's own, so that every key reaches the program; two desktops to change between.
OPENBOX_CONFIG = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <placement><policy>Smart</policy></placement>
  <theme><name>Clearlooks</name><titleLayout>NLIMC</titleLayout><animateIconify>no</animateIconify></theme>
  <desktops><number>2</number><popupTime>0</popupTime></desktops>
  <keyboard/>
  <mouse>
    <dragThreshold>1</dragThreshold>
    <context name="Client"><mousebind button="Left" action="Press">
      <action name="Focus"/><action name="Raise"/></mousebind></context>
    <context name="Titlebar"><mousebind button="Left" action="Drag"><action name="Move"/></mousebind></context>
  </mouse>
</openbox_config>
"""

PANEL_CONFIG = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="{dark}"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="30"/>
      <property name="icon-size" type="uint" value="{icon}"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/><value type="int" value="2"/><value type="int" value="3"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="tasklist"/>
    <property name="plugin-2" type="string" value="separator">
      <property name="expand" type="bool" value="true"/><property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-3" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
  </property>
</channel>
"""

GTK_SETTINGS = """[Settings]
gtk-theme-name={theme}
gtk-application-prefer-dark-theme={dark}
gtk-enable-animations=false
gtk-cursor-blink=false
gtk-font-name=DejaVu Sans 10
"""

# What the bus may start by itself; nothing else of the machine's.
SERVICES = ("org.a11y.Bus.service", "org.xfce.Xfconf.service")


class Desktop:
    """Everything lives in one new folder below the temporary one, which goes away with the session. Use as a
    context manager. `bus=False` leaves the programs without a session bus, `manager=None` without a window
    manager; "xfwm4" is one that knows windows with shadows of their own. `without` names the extensions that the
    display does not have."""

    def __init__(self, *, locale="C.UTF-8", dark=False, compositor=False, panel=False, bus=True, manager="openbox",
                 size="1600x1000", locales=None, without=()):
        self._wanted = {"compositor": compositor, "panel": panel, "bus": bus, "manager": manager}
        self._size = size
        self._without = without
        self._locales = locales
        self.locale = locale
        self.dark = dark
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="orvalle-"))
        self.logs = self.folder / "logs"
        self.environment = {}
        self.panel = None
        self.windows = Windows(self)
        self.hand = Hand(self)
        self._processes = []

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Ends whatever is left of the session and removes its folder."""
        for process in reversed(self._processes):
            processes.end(process)
        self._processes.clear()
        processes.end_all_carrying(self._mark)
        shutil.rmtree(self.folder, ignore_errors=True)

    @property
    def _mark(self):
        return f"XDG_RUNTIME_DIR={self.folder}/run"

    def _start(self):
        for name in ("logs", "run", "tmp", "services"):
            (self.folder / name).mkdir(mode=0o700)
        self.environment = {
            "PATH": "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin",
            "XDG_RUNTIME_DIR": str(self.folder / "run"),
            "TMPDIR": str(self.folder / "tmp"),
            "XAUTHORITY": str(self.folder / "Xauthority"),
            "GDK_BACKEND": "x11",
            # Settings in a file of the home folder, not in a service that outlives the test.
            "GSETTINGS_BACKEND": "keyfile",
            "LANG": "C.UTF-8",
            # Without a graphics card, shaders are compiled for the processor: once for all homes.
            "MESA_SHADER_CACHE_DIR": str(self.folder / "shaders"),
            # A socket that is not there: no library may go and start a bus of its own.
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.folder}/run/bus",
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.folder}/run/no-system-bus",
        }
        if self.locale != "C.UTF-8":
            self.environment |= private_locale(self.locale, self._locales or self.folder / "locales")
        self.environment |= self.new_home("desktop")
        self._start_display()
        if self._wanted["bus"]:
            self._start_bus()
        if self._wanted["manager"]:
            self._start_manager()
        if self._wanted["compositor"]:
            self.start_compositor()
        if self._wanted["panel"]:
            self.start_panel()

    def new_home(self, name):
        """Makes an empty home folder; the variables that lead to it. Every program may have its own."""
        home = self.folder / name
        variables = {"HOME": str(home)}
        for variable, path in (("XDG_CONFIG_HOME", ".config"), ("XDG_DATA_HOME", ".local/share"),
                               ("XDG_STATE_HOME", ".local/state"), ("XDG_CACHE_HOME", ".cache")):
            (home / path).mkdir(parents=True, mode=0o700)
            variables[variable] = str(home / path)
        settings = home / ".config/gtk-3.0/settings.ini"
        settings.parent.mkdir()
        settings.write_text(GTK_SETTINGS.format(theme="Adwaita-dark" if self.dark else "Adwaita",
                                                dark=str(self.dark).lower()), encoding="utf-8")
        return variables

    def spawn(self, name, command, **options):
        """Starts one more program of the session; it ends with it."""
        process = processes.spawn(command, self.environment, self.logs / name, **options)
        self._processes.append(process)
        return process

    def end(self, process):
        """Ends a program of the session before the rest."""
        processes.end(process)
        self._processes.remove(process)

    def run(self, *command, **options):
        """Runs a command of the session to its end; its output as text."""
        options = {"env": self.environment, "stdin": subprocess.DEVNULL, "capture_output": True, "text": True,
                   "check": True, "timeout": 60} | options
        return subprocess.run(command, **options).stdout

    def _start_display(self):
        # One cookie for whatever display number the server finds free.
        name, cookie = b"MIT-MAGIC-COOKIE-1", secrets.token_bytes(16)
        entry = struct.pack(">HHH", 0xFFFF, 0, 0)
        for part in (name, cookie):
            entry += struct.pack(">H", len(part)) + part
        path = self.folder / "Xauthority"
        path.touch(mode=0o600)
        path.write_bytes(entry)
        reading, writing = os.pipe()
        with os.fdopen(reading, "rb") as number:
            self.spawn("xvfb", ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{self._size}x24",
                                "-nolisten", "tcp", "-noreset", "-auth", str(path),
                                *(word for name in self._without for word in ("-extension", name))],
                       pass_fds=[writing])
            os.close(writing)
            answer = number.readline().strip().decode()
        assert answer.isdigit(), "Xvfb did not start: " + (self.logs / "xvfb").read_text(errors="replace")
        self.environment["DISPLAY"] = f":{answer}"

    def _start_bus(self):
        for service in SERVICES:
            source = pathlib.Path("/usr/share/dbus-1/services") / service
            if source.is_file():
                (self.folder / "services" / service).symlink_to(source)
        config = self.folder / "bus.conf"
        config.write_text(BUS_CONFIG.format(socket=self.folder / "run/bus", services=self.folder / "services"),
                          encoding="utf-8")
        self.spawn("bus", ["dbus-daemon", f"--config-file={config}", "--nofork", "--nopidfile"])
        processes.wait_for("session bus", (self.folder / "run/bus").exists)
        # Toolkits make themselves accessible only where somebody asked for it.
        self.run("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
                 "--method", "org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled", "<true>")

    def _start_manager(self):
        if self._wanted["manager"] == "openbox":
            config = self.folder / "openbox.xml"
            config.write_text(OPENBOX_CONFIG, encoding="utf-8")
            self.spawn("openbox", ["openbox", "--sm-disable", "--config-file", str(config)])
        else:
            self.spawn("xfwm4", ["xfwm4", "--sm-client-disable", "--compositor=on", "--vblank=off"])
        processes.wait_for("window manager", lambda: "window id" in self.run(
            "xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))

    def start_compositor(self):
        """Starts a compositor, which makes translucent windows translucent."""
        process = self.spawn("picom", ["picom", "--backend", "xrender", "--config", "/dev/null"])
        # It owns the selection that says so through a window of its name.
        processes.wait_for("compositor", lambda: self.run("xdotool", "search", "--name", "^picom$", check=False))
        return process

    def start_panel(self):
        """Starts a panel along the top edge with a window list and a tray."""
        config = pathlib.Path(self.environment["XDG_CONFIG_HOME"]) / "xfce4/xfconf/xfce-perchannel-xml"
        config.mkdir(parents=True, exist_ok=True)
        (config / "xfce4-panel.xml").write_text(
            PANEL_CONFIG.format(dark=str(self.dark).lower(), icon=22), encoding="utf-8")
        self.panel = self.spawn("panel", ["xfce4-panel", "--disable-wm-check"])
        processes.wait_for("tray", lambda: "true" in self.run(
            "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
            "/org/freedesktop/DBus", "--method", "org.freedesktop.DBus.NameHasOwner",
            "org.kde.StatusNotifierWatcher"), 20)
        return self.panel
