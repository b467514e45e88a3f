"""The service in a process of its own, so that it can be killed and stopped: PORT. Tells a state every second, and does
what standard input says: "close CODE", "reset", "refuse STATUS", "accept". Says "ready" when it listens."""

import os
import pathlib
import select
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests/desktop"))
from harness.page import session, task  # noqa: E402
from harness.link_service import LinkService  # noqa: E402

TASKS = [task(f"t{number}", f"Compito numero {number}", number % 2 == 0) for number in range(20)]


def obey(service, words):
    if words[0] == "refuse":
        service.refusal = int(words[1])
    elif words[0] == "accept":
        service.refusal = None
    elif words[0] == "close":
        for connection in service.open():
            connection.close(int(words[1]))
    elif words[0] == "reset":
        for connection in service.open():
            connection.reset()


def main():
    with LinkService(int(sys.argv[1])) as service:
        print("ready", flush=True)
        number, heard = 0, b""
        while True:
            if select.select([0], [], [], 1.0)[0]:
                data = os.read(0, 4096)
                if not data:
                    return
                *lines, heard = (heard + data).split(b"\n")
                for line in lines:
                    obey(service, line.decode().split())
            else:
                number += 1
                for connection in service.open():
                    connection.send_state(session(projectTitle=f"Prova {number}", tasks=TASKS))


if __name__ == "__main__":
    main()
