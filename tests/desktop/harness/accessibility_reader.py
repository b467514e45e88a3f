#!/usr/bin/python3
"""Lists the showing accessible objects of a process and of the page in its window as JSON, or presses one:
PID list | PID press ROLE NAME."""

import json
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

STATES = ("ACTIVE", "CHECKED", "ENABLED", "FOCUSED", "SENSITIVE", "SHOWING", "EDITABLE", "MODAL")

# How many seconds one answer may take.
PATIENCE = 2.0


# Where nothing below shows as long as the object itself does not.
CLOSED = ("frame", "window", "dialog", "alert", "menu", "popup menu")


def walk(accessible, depth=0):
    """Every showing object from one on down, with its depth; those that vanish meanwhile are left out, and so is a page
    that answers nobody, as it waits for an answer itself."""
    try:
        asked = time.monotonic()
        showing = accessible.get_state_set().contains(Atspi.StateType.SHOWING)
        if time.monotonic() - asked >= PATIENCE:
            return
        if showing or depth == 0:
            yield accessible, depth
        elif accessible.get_role_name() in CLOSED:
            return
        for index in range(accessible.get_child_count()):
            child = accessible.get_child_at_index(index)
            if child is not None:
                yield from walk(child, depth + 1)
    except GLib.Error:
        return


def described(accessible, depth):
    states = accessible.get_state_set()
    text = ""
    if accessible.get_text_iface():
        text = Atspi.Text.get_text(accessible, 0, Atspi.Text.get_character_count(accessible))
    box = None
    if accessible.get_component_iface():
        extents = Atspi.Component.get_extents(accessible, Atspi.CoordType.SCREEN)
        box = [extents.x, extents.y, extents.width, extents.height]
    labels = [relation.get_target(index).get_name() for relation in accessible.get_relation_set()
              if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY
              for index in range(relation.get_n_targets())]
    return {"role": accessible.get_role_name(), "name": accessible.get_name() or "", "text": text or "", "labels": labels,
            "states": [name for name in STATES if states.contains(getattr(Atspi.StateType, name))],
            "box": box, "depth": depth}


def applications(pid):
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        try:
            if application is not None and application.get_process_id() == pid:
                yield application
        except GLib.Error:
            continue


def objects(pid):
    for application in applications(pid):
        for accessible, depth in walk(application):
            try:
                yield accessible, described(accessible, depth)
            except GLib.Error:
                continue


def main():
    Atspi.init()
    # The library would wait fifteen seconds for a process that is new.
    Atspi.set_timeout(int(PATIENCE * 1000), int(PATIENCE * 1000))
    pid, order, *words = sys.argv[1:]
    if order == "list":
        json.dump([description for _, description in objects(int(pid))], sys.stdout)
        return
    role, name = words
    for accessible, description in objects(int(pid)):
        if description["role"] == role and name in (description["name"], description["text"]):
            Atspi.Action.do_action(accessible, 0)
            json.dump(description, sys.stdout)
            return
    sys.exit(f"no {role} {name!r}")


if __name__ == "__main__":
    main()
