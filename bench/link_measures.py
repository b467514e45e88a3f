"""What the live link takes, beside peers in the same run."""

import json
import pathlib
import statistics
import subprocess
import tempfile

from harness import processes
from harness.desktop import Desktop
from harness.home import Home
from harness.link_service import ANON_KEY, CHANNEL_KEY, state_frame
from harness.page import Page, session, task
from harness.server import Site
from harness.tray import Tray

ROOT = pathlib.Path(__file__).resolve().parent.parent
CLIENT = ROOT / "demo/page/vendor/realtime.js"
RUNS = 9
LATENCY_ROUNDS = 200
FRAMES = {5: 50_000, 500: 1000}


def measure_frames(build):
    """From a frame's text to the owner's callback, beside the official client under Node."""
    for tasks, count in FRAMES.items():
        text = state_frame(session(origin="https://app.example/", tasks=[
            task(f"task-{number}", f"Compito numero {number}", number % 2 == 0) for number in range(tasks)]))
        with tempfile.NamedTemporaryFile("w", suffix=".json") as file:
            file.write(json.dumps(json.loads(text), separators=(",", ":")))
            file.flush()
            commands = {"orvalle": [build / "bench/frames", file.name, str(count)],
                        "client": ["node", ROOT / "bench/frames_peer.mjs", CLIENT, file.name, str(count)]}
            taken = {name: [] for name in commands}
            for _ in range(RUNS):
                for name, command in commands.items():
                    taken[name].append(float(subprocess.run(command, capture_output=True, text=True, check=True).stdout))
        middle = {name: statistics.median(values) for name, values in taken.items()}
        print(f"link    frames a second, text to the owner, {tasks} tasks, median of {RUNS}: official client "
              f"{1e9 / middle['client']:,.0f}, Orvalle {1e9 / middle['orvalle']:,.0f}, "
              f"ratio {middle['client'] / middle['orvalle']:.2f} (above 1)")


def measure_latency(build):
    """From the server's send to the label on the bus, beside a bare echo and signal."""
    with Desktop() as desktop, Tray(desktop) as tray, Site() as site:
        log = desktop.logs / "latency"
        bench = desktop.spawn("latency", [str(build / "bench/link_latency"), str(LATENCY_ROUNDS)])
        port = int(processes.wait_for("port", lambda: log.read_text().split()[:1])[0])
        home = Home(desktop)
        home.write_defaults({"supabaseUrl": f"http://127.0.0.1:{port}", "anonKey": ANON_KEY, "channelKey": CHANNEL_KEY,
                             "overlayOn": False})
        with open(desktop.logs / "orvalle", "ab") as output:
            program = subprocess.Popen([build / "Orvalle.app/AppRun"], env=home.environment | {
                "ORVALLE_APP_URL": site.url}, stdin=subprocess.DEVNULL, stdout=output, stderr=output)
        try:
            tray.wait_item()
            Page(site).wait_loaded()
            desktop.spawn("link-floor", [str(build / "bench/link_floor"), f"ws://127.0.0.1:{port}/floor"])
            bench.wait(120)
        finally:
            processes.end(program)
        ours, floor = (float(number) for number in log.read_text().split()[1:3])
    print(f"        server's send to the label on the bus, median of {LATENCY_ROUNDS}: echo and signal {floor:.0f} µs, "
          f"Orvalle {ours:.0f} µs, ratio {ours / floor:.2f} (at most 2)")


def measure_link(build):
    measure_frames(build)
    measure_latency(build)
