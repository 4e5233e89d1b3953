#!/usr/bin/python3
"""Starts the phone with a composer open and finds, over the AT-SPI bus as a screen reader
does, the composer's To: field (an entry named "To") and its SEND button (a push button named
"SEND"). Run inside a session bus and an X server (see check-accessibility)."""

import os
import subprocess
import sys
import tempfile
import time

import pyatspi

ENTRY_ROLES = {pyatspi.ROLE_ENTRY, pyatspi.ROLE_TEXT, pyatspi.ROLE_PASSWORD_TEXT}
WANTED = {"To": ENTRY_ROLES, "SEND": {pyatspi.ROLE_PUSH_BUTTON}}


def walk(node, depth=0):
    if node is None or depth > 40:
        return
    yield node
    for i in range(node.childCount):
        try:
            yield from walk(node.getChildAtIndex(i), depth + 1)
        except Exception:  # a child that went away while we walked
            continue


def find_controls(app_name_part):
    desktop = pyatspi.Registry.getDesktop(0)
    found = {}
    for app in desktop:
        if app is None or app_name_part not in (app.name or ""):
            continue
        for node in walk(app):
            for name, roles in WANTED.items():
                if node.name == name and node.getRole() in roles:
                    found[name] = node.getRoleName()
    return found


def main():
    phone = sys.argv[1]
    with tempfile.TemporaryDirectory() as data_dir:
        env = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_QPA_PLATFORM="xcb")
        process = subprocess.Popen(
            [phone, "--data-dir", data_dir, "sms:+4917012345?body=Hi"], env=env)
        try:
            found = {}
            deadline = time.monotonic() + 40
            while time.monotonic() < deadline:
                if process.poll() is not None:
                    print(f"the phone exited with {process.returncode}", file=sys.stderr)
                    return 1
                found = find_controls("tessaly")
                if len(found) == len(WANTED):
                    print("found:", found)
                    return 0
                time.sleep(0.5)
            print(f"over AT-SPI only these were found: {found}", file=sys.stderr)
            return 1
        finally:
            process.terminate()
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()


if __name__ == "__main__":
    sys.exit(main())
