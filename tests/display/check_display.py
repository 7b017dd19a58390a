"""Opens the program in a window of a display of its own, without a window manager: it fills the display when asked to, and ends in time.
What somebody plays there is recorded and proves to be the same run without a window; a replay is taken over, and the new run is one, too.

usage: check_display.py ARENA
"""
import ctypes
import json
import os
import signal
import subprocess
import sys
import tempfile
import time

ARENA = sys.argv[1]
SIZE = (1600, 900)
UNSEEN = ("arena: there is no display; the game plays itself off-screen", "Screenshots/show-")  # what a run that nobody sees says
BEGIN_SECONDS, END_SECONDS = 60, 20


class Display:
    """A display server without a screen."""

    def __enter__(self):
        reader, writer = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "%dx%dx24" % SIZE, "-nolisten", "tcp", "-noreset"],
                                       pass_fds=[writer], stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as stream:
            self.name = ":" + stream.readline().strip()
        return self

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()

    def ask(self, *command):
        done = subprocess.run(["xdotool", *command], env=dict(os.environ, DISPLAY=self.name), capture_output=True, text=True)
        return done.stdout if done.returncode == 0 else ""


def start(display, home, *arguments, plays=("--room", "rArena", "--demo"), **streams):
    environment = dict(os.environ, HOME=home, XDG_RUNTIME_DIR=home, SDL_AUDIODRIVER="dummy", ALSOFT_DRIVERS="null", XDG_STATE_HOME=home, XDG_DATA_HOME=home)
    for name in ("DISPLAY", "WAYLAND_DISPLAY"):
        environment.pop(name, None)
    if display is not None:
        environment["DISPLAY"] = display.name
    return subprocess.Popen([ARENA, "--mute", *plays, *arguments], cwd=home, env=environment, stderr=subprocess.PIPE,
                            text=True, **streams)


def until(condition, program):
    """What the condition gives once it holds; None when the program ended first or time is up."""
    for _ in range(BEGIN_SECONDS * 20):
        found = condition()
        if found:
            return found
        if program.poll() is not None:
            break
        time.sleep(0.05)
    return None


def geometry(display):
    """(x, y, width, height) of the shown window, or None."""
    windows = display.ask("search", "--onlyvisible", "--name", ".").split()
    if not windows:
        return None
    lines = dict(line.split("=") for line in display.ask("getwindowgeometry", "--shell", windows[-1]).split())
    return tuple(int(lines[key]) for key in ("X", "Y", "WIDTH", "HEIGHT")) if "WIDTH" in lines else None


def end(program, by, expected):
    signal_name = by.name
    program.send_signal(by)
    try:
        _, errors = program.communicate(timeout=END_SECONDS)
    except subprocess.TimeoutExpired:
        program.kill()
        return ["%s: the program did not end" % signal_name]
    problems = []
    if program.returncode != expected:
        problems.append("%s: status %d instead of %d" % (signal_name, program.returncode, expected))
    unexpected = [line for line in errors.splitlines() if not line.startswith(UNSEEN)]
    if unexpected:
        problems.append("%s: it wrote %r" % (signal_name, unexpected))
    return problems


def recordings(home):
    return sorted(os.path.join(folder, name) for folder, _, names in os.walk(home) for name in names if name.endswith(".rec"))


def has_grown(path, by):
    """Whether the file has so many bytes more than when first asked."""
    before = os.path.getsize(path)
    return lambda: os.path.getsize(path) >= before + by


def verify(recording):
    done = subprocess.run([ARENA, "--replay", recording, "--verify"], capture_output=True, text=True)
    return [] if done.returncode == 0 else ["%s: status %d, %s" % (os.path.basename(recording), done.returncode, done.stderr.strip())]


def play(display, key, x, y):
    display.ask("mousemove", str(x), str(y))
    for what in (("keydown", key), ("mousedown", "1")):
        display.ask(*what)
    time.sleep(0.4)
    for what in (("keyup", key), ("mouseup", "1")):
        display.ask(*what)


def check_recordings(display, home):
    problems = []
    program = start(display, home, plays=("--room", "rArena"))
    if until(lambda: geometry(display) and recordings(home), program) is None:
        return ["nothing was recorded"] + end(program, signal.SIGTERM, 143)
    for number, key in enumerate("wasd"):
        play(display, key, 300 + 100 * number, 400)
    problems += end(program, signal.SIGTERM, 143)
    first = recordings(home)[0]
    state = subprocess.run([ARENA, "--replay", first, "--describe"], capture_output=True, text=True).stdout
    if "last_key: %d\n" % ord("D") not in state:
        problems.append("the recording does not hold the last key")
    problems += verify(first)

    program = start(display, home, "--replay", first, plays=())
    until(lambda: geometry(display), program)
    for _ in range(50):  # until the first pass is done
        display.ask("key", "t")
        if len(recordings(home)) > 1:
            break
        time.sleep(0.2)
    if len(recordings(home)) < 2:
        return problems + ["the replay was not taken over"] + end(program, signal.SIGTERM, 143)
    second = recordings(home)[1]
    play(display, "d", 700, 300)
    until(has_grown(second, 100), program)
    problems += end(program, signal.SIGTERM, 143)
    return problems + verify(second) + check_crash(display, home, first)


def check_crash(display, home, recording):
    """A run that was taken over leaves as much behind when it crashes as any other."""
    program = start(display, home, "--replay", recording, "--take-over", "20", plays=())
    if until(lambda: len(recordings(home)) > 2, program) is None:
        return ["the replay was not taken over by an option"] + end(program, signal.SIGTERM, 143)
    until(has_grown(recordings(home)[2], 100), program)
    program.send_signal(signal.SIGSEGV)
    _, errors = program.communicate(timeout=END_SECONDS)
    folder = os.path.join(home, "arena/crashes/crash-1")
    left = sorted(os.listdir(folder)) if os.path.isdir(folder) else []
    if program.returncode != -signal.SIGSEGV or left != ["log.txt", "report.txt", "run.rec"]:
        return ["a crash of a run that was taken over left %s, status %d: %s" % (left, program.returncode, errors)]
    with open(os.path.join(folder, "report.txt"), encoding="utf-8") as report:
        command = report.read().split("To play it up to there: ")[1].split("\n")[0]
    done = subprocess.run(command + " --verify", shell=True, capture_output=True, text=True)
    return [] if done.returncode == 0 and "the same run: " in done.stdout else ["%s: %s%s" % (command, done.stdout, done.stderr)]


def check_console(display, home):
    """A console beside the window: frames by the clock, step by step, by the clock again."""
    program = start(display, home, "--console", plays=("--room", "rArena"), stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    problems = []

    def ask(request):
        program.stdin.write(json.dumps(request) + "\n")
        program.stdin.flush()
        return json.loads(program.stdout.readline())

    def frame():
        return ask({"step": 0})["frame"]

    def expect(what, holds):
        if not holds:
            problems.append("console: " + what)

    expect("no value came", ask({"eval": "6 * 7"})["value"] == 42)
    first = frame()
    expect("the clock stands still", until(lambda: frame() > first + 5, program))
    stepped = ask({"step": 10})["frame"]
    time.sleep(0.3)
    expect("frames go on that nobody stepped", frame() == stepped and ask({"step": 3})["frame"] == stepped + 3)
    ask({"run": True})
    expect("the clock does not go on", until(lambda: frame() > stepped + 10, program))
    ask({"step": 1})
    program.stdin.write('{"eval": "1')  # half a line holds nothing up
    program.stdin.flush()
    time.sleep(0.2)
    program.stdin.write('"}\n')
    program.stdin.flush()
    expect("half a line was lost", json.loads(program.stdout.readline()).get("value") == 1)
    program.stdin.close()
    program.stdin = None
    time.sleep(0.3)
    expect("the game ended with the console", program.poll() is None)
    return problems + end(program, signal.SIGTERM, 143)


def ask_to_close(display, window):
    """What a window manager sends when somebody presses the cross."""
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XInternAtom.restype = ctypes.c_ulong
    connection = ctypes.c_void_p(x11.XOpenDisplay(display.name.encode()))
    protocols, delete = (ctypes.c_ulong(x11.XInternAtom(connection, name, 0)) for name in (b"WM_PROTOCOLS", b"WM_DELETE_WINDOW"))

    class ClientMessage(ctypes.Structure):
        _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int), ("display", ctypes.c_void_p),
                    ("window", ctypes.c_ulong), ("message", ctypes.c_ulong), ("format", ctypes.c_int), ("data", ctypes.c_long * 5),
                    ("rest", ctypes.c_long * 24)]

    event = ClientMessage(33, 0, 1, connection, window, protocols, 32, (ctypes.c_long * 5)(delete.value))
    x11.XSendEvent(connection, ctypes.c_ulong(window), 0, 0, ctypes.byref(event))
    x11.XCloseDisplay(connection)


def check_window(display, home):
    """A script moves the window and writes above it; to close it ends the game, as an input of the run."""
    program = start(display, home, "--console", plays=("--room", "rArena"), stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    program.stdin.write(json.dumps({"eval": 'window_set_position(50, 60); window_set_caption("Moved")'}) + "\n")
    program.stdin.flush()
    problems = []
    if until(lambda: (geometry(display) or (0, 0))[:2] == (50, 60), program) is None:
        problems.append("window: it stands at %s" % (geometry(display),))
    if not display.ask("search", "--name", "Moved").split():
        problems.append("window: it has no caption")
    problems += end(program, signal.SIGTERM, 143)

    for recording in recordings(home):
        os.remove(recording)
    program = start(display, home, plays=("--room", "rArena"))
    window = until(lambda: recordings(home) and display.ask("search", "--name", "Arena").split(), program)
    if not window:
        return problems + ["window: none opened"] + end(program, signal.SIGTERM, 143)
    ask_to_close(display, int(window[-1]))
    until(lambda: program.poll() is not None, program)
    if program.poll() != 0:
        return problems + ["window: closing it ends with status %s" % program.poll()] + end(program, signal.SIGTERM, 143)
    program.communicate()
    return problems + verify(recordings(home)[0])


def check():
    problems = []
    with Display() as display:
        with tempfile.TemporaryDirectory() as home:
            program = start(display, home, "--fullscreen")
            if until(lambda: geometry(display) == (0, 0) + SIZE, program) is None:
                problems.append("fullscreen: the window is %s on a display of %s" % (geometry(display), SIZE))
            problems += end(program, signal.SIGTERM, 143)
        with tempfile.TemporaryDirectory() as home:
            program = start(display, home)
            if until(lambda: geometry(display), program) is None:
                problems.append("no window opened")
            problems += end(program, signal.SIGINT, 130)
        with tempfile.TemporaryDirectory() as home:
            problems += check_recordings(display, home)
        with tempfile.TemporaryDirectory() as home:
            problems += check_console(display, home)
        with tempfile.TemporaryDirectory() as home:
            problems += check_window(display, home)
    for by, status in ((signal.SIGTERM, 143), (signal.SIGINT, 130)):
        with tempfile.TemporaryDirectory() as home:
            program = start(None, home, "--frames", "10000000")
            if until(lambda: os.path.exists(home + "/Screenshots/show-1.png"), program) is None:
                problems.append("without a display: no picture was left")
            problems += end(program, by, status)
    return problems


found = check()
print("\n".join(found))
sys.exit(1 if found else 0)
