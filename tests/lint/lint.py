"""House rules as tests: lint.py RULE ROOT, where RULE is layering, features, formatting or selftest."""
import pathlib
import re
import subprocess
import sys
import tempfile

FEATURES = ["core", "cleaning", "duplicates", "diskusage", "volumes", "uninstall", "memory",
            "loginitems", "preferences", "effects"]
GUI = re.compile(r"#include\s*<(Qt(Gui|Widgets|OpenGL|OpenGLWidgets|Svg)/|"
                 r"Q(Widget|Application|GuiApplication|MainWindow|Image|Pixmap|Painter|Icon|Color|"
                 r"Font|Menu|Dialog|Label|Push|Layout|Action|SystemTray|Palette|Style|Brush|Pen|"
                 r"Window|Screen|Cursor|Clipboard|DesktopServices|Standard(Item|Model)|Abstract"
                 r"(Button|ScrollArea|ItemView|Slider|SpinBox)|OpenGL|Svg|Tree(View|Widget)|"
                 r"Table(View|Widget)|List(View|Widget)|Header|StyledItem|LineEdit|TextEdit|Combo|"
                 r"CheckBox|Radio|Tool|Slider|ScrollArea|ScrollBar|Frame|Tab|Stacked|MessageBox|"
                 r"Shortcut|KeyEvent|MouseEvent|PaintEvent|CloseEvent|Accessible|HBox|VBox|Grid|Form))")
LINUX = re.compile(r'#include\s*<(linux/|asm/|mntent\.h|sys/(vfs|statfs|epoll|inotify|eventfd|'
                   r'signalfd|timerfd|syscall|prctl|mount|sysinfo|fanotify|sendfile|sysmacros)\.h|'
                   r'QDBus|QtDBus|dbus/)|"/proc\b|"/sys/|QDBus[A-Z]')


def sources(root):
    return sorted(path for path in (root / "src").rglob("*") if path.suffix in (".h", ".cpp"))


def find(root, pattern, allowed):
    faults = []
    for path in sources(root):
        place = path.relative_to(root).as_posix()
        if allowed(place):
            continue
        for number, line in enumerate(path.read_text().splitlines(), 1):
            if pattern.search(line.split("//")[0]):
                faults.append(f"{place}:{number}: {line.strip()}")
    return faults


def layering(root):
    faults = find(root, GUI, lambda place: "/ui/" in place or place.startswith("src/effects/")
                  or place == "src/main.cpp")
    faults += find(root, LINUX, lambda place: place.startswith(("src/platform/linux/", "src/helper/")))
    upward = re.compile(r'#include\s*"(%s|cli)/' % "|".join(FEATURES))
    faults += find(root, upward, lambda place: not place.startswith(("src/foundation/", "src/platform/")))
    linux = re.compile(r'#include\s*"(platform/linux|helper)/')
    faults += find(root, linux, lambda place: place.startswith(("src/platform/linux/", "src/helper/")))
    return faults


def includes(root):
    """What each feature includes. core/app, which puts the features together, counts by itself."""
    used = {}
    pattern = re.compile(r'#include\s*"(core/app|%s)/' % "|".join(FEATURES))
    for path in sources(root):
        parts = path.relative_to(root / "src").parts
        feature = "core/app" if parts[:2] == ("core", "app") else parts[0]
        if feature not in FEATURES and feature != "core/app":
            continue
        for line in path.read_text().splitlines():
            match = pattern.match(line)
            if match and match[1] != feature:
                used.setdefault(feature, set()).add(match[1])
    return used


def features(root):
    """The includes between features are those that the architecture page lists, and have no cycle."""
    page = (root / "doc" / "ARCHITECTURE.md").read_text()
    listed = {}
    for match in re.finditer(r"^    ([\w/]+) -> ([\w/, ]+)$", page, re.M):
        listed[match[1]] = {name.strip() for name in match[2].split(",")}
    used = includes(root)
    faults = [f"{feature} includes {other}, which doc/ARCHITECTURE.md does not list"
              for feature in used for other in sorted(used[feature] - listed.get(feature, set()))]
    faults += [f"doc/ARCHITECTURE.md lists {feature} -> {other}, which nothing uses"
               for feature in listed for other in sorted(listed[feature] - used.get(feature, set()))]

    def reaches(start, goal, seen):
        for other in used.get(start, ()):
            if other == goal or (other not in seen and reaches(other, goal, seen | {other})):
                return True
        return False
    faults += [f"{feature} includes itself by way of others" for feature in used
               if reaches(feature, feature, set())]
    return faults


def formatting(root):
    files = [str(path) for folder in ("src", "tests", "bench") for path in (root / folder).rglob("*")
             if path.suffix in (".h", ".cpp")]
    result = subprocess.run(["clang-format", "--dry-run", "-Werror", *files],
                            capture_output=True, text=True)
    return result.stderr.splitlines()[:40] if result.returncode else []


def selftest(_):
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for place in ("src/core", "src/foundation", "src/volumes", "doc", "tests", "bench"):
            (root / place).mkdir(parents=True)
        (root / "src/core/A.cpp").write_text('#include <QWidget>\nauto x = "/proc/self";\n'
                                             '#include "volumes/B.h"\n#include "helper/F.h"\n')
        (root / "src/volumes/B.h").write_text('#include "core/A.h"\n')
        (root / "src/foundation/C.h").write_text('#include "core/A.h"\n')
        (root / "doc/ARCHITECTURE.md").write_text("    core -> volumes\n    cleaning -> core\n")
        if len(layering(root)) != 4:
            faults.append(f"layering finds {layering(root)}")
        if len(features(root)) != 4:
            faults.append(f"features finds {features(root)}")
        if not formatting(root):
            faults.append("formatting finds nothing")
    return faults


if __name__ == "__main__":
    found = globals()[sys.argv[1]](pathlib.Path(sys.argv[2]))
    print("\n".join(found))
    sys.exit(1 if found else 0)
