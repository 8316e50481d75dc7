#!/usr/bin/env python3
"""What a screen reader gets from the running panel: read from the accessibility bus, where it listens.

    screen_reader.py PROGRAM BANDPLANS WORK [--list]

Starts a display and a session bus of its own, and the demo on them. With --list it prints what it finds.
"""
import os
import re
import shutil
import signal
import subprocess
import sys
import time

PATIENCE = 8.0  # seconds, for what the bus brings by itself
ROLES = {"spin button", "slider", "dial", "push button", "check box", "radio button", "label", "progress bar", "panel"}
TURNED = {"spin button", "slider", "dial"}
# Names of the code, and gestures, are no names.
NO_NAME = re.compile(r"^$|^(lbl|chk|opt|sld|dial|cmd|cbo|pic|img|fr|txt|lst|mnu)[A-Z0-9]|\(\d|^dialtuner|[Cc]lick|=| : ")


def run_in_own_session(arguments):
    """The rest of this file on a display and a bus that end with it."""
    read_end, write_end = os.pipe()
    display = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1440x900x24", "-nolisten", "tcp",
                                "-noreset"],
                               pass_fds=[write_end], stderr=subprocess.DEVNULL)
    os.close(write_end)
    try:
        number = os.read(read_end, 16).decode().strip()
        environment = dict(os.environ, DISPLAY=":" + number, QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                           XDG_RUNTIME_DIR=arguments[2], NO_AT_BRIDGE="0", QUORL_OWN_SESSION="1")
        environment.pop("WAYLAND_DISPLAY", None)
        # Leaks are looked for by the tests that don't go through the bus.
        environment["ASAN_OPTIONS"] = environment.get("ASAN_OPTIONS", "") + ":detect_leaks=0"
        return subprocess.run(["dbus-run-session", "--", sys.executable, __file__, *arguments], env=environment,
                              timeout=60).returncode
    finally:
        display.terminate()
        display.wait()


class Panel:
    """The program on the bus."""

    def __init__(self, program, plans, work, options=("--demo",), settings="settings.ini", home=None):
        self.errors = os.path.join(work, "errors.txt")
        self.output = open(self.errors, "w")
        environment = dict(os.environ)
        if home:
            environment = {key: value for key, value in environment.items() if not key.startswith("XDG_")}
            environment.update(HOME=home, XDG_RUNTIME_DIR=work)
        self.process = subprocess.Popen([program, *options, "--settings", os.path.join(work, settings), "--folder", plans],
                                        env=environment, stdout=self.output, stderr=self.output)
        self.application = wait_for(self.find, "the program is not on the bus")

    def find(self):
        for application in pyatspi.Registry.getDesktop(0):
            if application and application.get_process_id() == self.process.pid and application.childCount > 0:
                return application
        return None

    def all(self):
        return list(walk(self.application))

    def named(self, name, role):
        for node in self.all():
            if node.name == name and node.getRoleName() == role:
                return node
        raise AssertionError(f"no {role} is called {name!r}")

    def close(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait(10)
        self.output.close()


def walk(node):
    yield node
    for child in node:
        if child:
            yield from walk(child)


def wait_for(condition, otherwise):
    """Lets the bus bring its events until `condition` gives something."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        while context.iteration(False):
            pass
        found = condition()
        if found:
            return found
        time.sleep(0.02)
    raise AssertionError(otherwise)


def value_of(node):
    return node.queryValue().currentValue if "Value" in pyatspi.listInterfaces(node) else None


def text_of(node):
    return node.queryText().getText(0, -1) if "Text" in pyatspi.listInterfaces(node) else ""


def is_focused(node):
    return node.getState().contains(pyatspi.STATE_FOCUSED)


def list_all(panel):
    for node in panel.all():
        print(f"{node.getRoleName():14} {node.name!r:44} {value_of(node)} {text_of(node)!r}")


def check_names_and_values(panel, fault):
    found = [node for node in panel.all() if node.getRoleName() in ROLES]
    if len(found) < 100:
        fault(f"only {len(found)} controls are on the bus")
    for node in found:
        role = node.getRoleName()
        what = f"{role} {node.name!r}"
        if NO_NAME.search(node.name):
            fault(f"{what}: no name to say")
        if role in TURNED and value_of(node) is None:
            fault(f"{what}: no value")
        if role in ("spin button", "label") and "Text" not in pyatspi.listInterfaces(node):
            fault(f"{what}: no text")
    for name, role, text in (("Filter high edge", "spin button", "5000 Hz"), ("Signal strength", "label", None),
                             ("AGC decay", "spin button", "5.0 s"), ("Tuning step", "push button", "100 Hz")):
        told = text_of(panel.named(name, role))
        if not told or (text and told != text):
            fault(f"{name} reads {told!r}, not {text!r}")
    if [node.getRoleName() for node in panel.application if node.name == "QUORLSDR"] != ["frame"]:
        fault("the window is no frame")


def check_events(panel, fault):
    """A step of the wheel and one of the keys are told, once for what they turn."""
    told = []
    kind = "object:property-change:accessible-value"

    def listen(event):
        told.append((event.source.name, event.source.getRoleName()))

    pyatspi.Registry.registerEventListener(listen, kind)
    edge = panel.named("Filter low edge", "spin button")
    place = edge.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    x, y = place.x + place.width // 2, place.y + place.height // 2
    before = value_of(edge)
    pyatspi.Registry.generateMouseEvent(x, y, "abs")
    for gesture, turn in (("wheel", lambda: pyatspi.Registry.generateMouseEvent(x, y, "b4c")),
                          ("key", lambda: pyatspi.Registry.generateKeyboardEvent(0xff54, None, pyatspi.KEY_SYM))):
        told.clear()
        was = value_of(edge)
        turn()
        wait_for(lambda: value_of(edge) != was, f"a {gesture} does not turn the filter's edge")
        wait_for(lambda: (edge.name, "spin button") in told, f"a {gesture} step is not told")
    if value_of(edge) != before:
        fault(f"wheel up and key down end at {value_of(edge)}, not {before}")
    pyatspi.Registry.deregisterEventListener(listen, kind)


def check_frequency(panel, fault):
    """It is set over the bus, and one digit has the keyboard's focus."""
    frequency = panel.named("Frequency", "spin button")
    frequency.queryValue().currentValue = 6075000.5
    wait_for(lambda: value_of(frequency) == 6075000.5, "the frequency can't be set")
    if text_of(frequency) != "6075000.5 Hz":
        fault(f"the frequency reads {text_of(frequency)!r}")
    if value_of(panel.named("Digit 1 MHz", "spin button")) != 6:
        fault("the digit of 1 MHz is not 6")
    panel.named("QUORLSDR", "frame").queryComponent().grabFocus()
    frequency.queryComponent().grabFocus()
    focused = wait_for(lambda: [node for node in panel.all() if is_focused(node)], "nothing has the focus")
    if [node.name for node in focused] != ["Digit 100 Hz"]:
        fault(f"the focus is on {[node.name for node in focused]}")
    edge = panel.named("Filter high edge", "spin button")
    edge.queryValue().currentValue = 4200
    wait_for(lambda: text_of(edge) == "4200 Hz", "the filter's edge can't be set")


def check_first_start(program, plans, work, fault):
    """The page that comes before the receiver is worked by what is on the bus, up to the demo."""
    home = os.path.join(work, "home")
    os.makedirs(home)
    page = Panel(program, plans, work, options=(), settings="first.ini", home=home)
    try:
        for node in page.all():
            seen = node.getState().contains(pyatspi.STATE_SHOWING)
            if seen and node.getRoleName() in ROLES and NO_NAME.search(node.name):
                fault(f"first start: {node.getRoleName()} {node.name!r} has no name to say")
        page.named("Look again", "push button")
        page.named("No board", "radio button").queryAction().doAction(0)
        start = page.named("Start the demo", "push button").queryAction()
        start.doAction([start.getName(i) for i in range(start.nActions)].index("Press"))
        wait_for(lambda: [node for node in page.all() if node.name == "Frequency"], "the demo does not follow")
    finally:
        page.close()
    with open(os.path.join(work, "first.ini")) as settings:
        if "Board=none" not in settings.read():
            fault("that there is no board is not remembered")


def main(arguments):
    program, plans, work = arguments[:3]
    faults = []
    panel = Panel(program, plans, work)
    try:
        if "--list" in arguments:
            list_all(panel)
        for check in (check_names_and_values, check_events, check_frequency):
            try:
                check(panel, faults.append)
            except AssertionError as missing:
                faults.append(str(missing))
    finally:
        panel.close()
    try:
        check_first_start(program, plans, work, faults.append)
    except (AssertionError, ValueError) as missing:
        faults.append(f"first start: {missing}")
    with open(panel.errors) as errors:
        faults += [line.strip() for line in errors if "ccessib" in line or "AtSpi" in line]
    print("\n".join(faults) or "every control speaks")
    return 1 if faults else 0


if __name__ == "__main__":
    if "QUORL_OWN_SESSION" in os.environ:
        import pyatspi
        from gi.repository import GLib
        context = GLib.MainContext.default()
        sys.exit(main(sys.argv[1:]))
    shutil.rmtree(sys.argv[3], ignore_errors=True)
    os.makedirs(sys.argv[3], mode=0o700)
    plans = os.path.join(sys.argv[3], "plans")  # the radio writes what it remembers into its plans
    shutil.copytree(sys.argv[2], plans)
    sys.argv[2] = plans
    sys.exit(run_in_own_session(sys.argv[1:]))
