"""House rules as tests: lint.py RULE ROOT, where RULE is layering, features, formatting or selftest."""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

FEATURES = ["cleaning", "duplicates", "diskusage", "volumes", "uninstall", "memory", "loginitems",
            "preferences"]
# Includes run downwards only: a folder includes itself and folders of a lower row. Features stand in
# one row; which of them include one another is the architecture page's list.
ROWS = [["foundation"], ["linux"], ["platform"], ["core"], ["removal"], ["results"], FEATURES, ["app"],
        ["cli"]]
RANK = {folder: rank for rank, row in enumerate(ROWS) for folder in row}
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


# Every version of the formatter has ideas of its own.
FORMATTER = shutil.which("clang-format-14") or "clang-format"


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


def arrows(root):
    """Every include of the sources: the file, the line, where it stands and what it names, as the
    first folder and whether it is one of what draws."""
    pattern = re.compile(r'#include\s*"([^"]+)"')

    def place(parts):
        return (parts[0] if len(parts) > 1 else ""), "ui" in parts[:-1]
    for path in sources(root):
        parts = path.relative_to(root / "src").parts
        for number, line in enumerate(path.read_text().splitlines(), 1):
            if match := pattern.match(line):
                yield (f"src/{'/'.join(parts)}:{number}: {line.strip()}", place(parts),
                       place(tuple(match[1].split("/"))))


def layering(root):
    faults = find(root, GUI, lambda place: "/ui/" in place or place == "src/main.cpp")
    faults += find(root, LINUX, lambda place: place.startswith(("src/platform/linux/", "src/linux/",
                                                                "src/helper/")))
    linux = re.compile(r'#include\s*"(platform/linux|helper)/')
    faults += find(root, linux, lambda place: place.startswith(("src/platform/linux/", "src/helper/")))
    for line, (folder, draws), (other, otherDraws) in arrows(root):
        if folder in ("", other, "helper") or other == "helper":
            continue
        # The kit of the screens knows no feature; the engine knows no screen.
        top = RANK["results"] if folder == "ui" else RANK[folder]
        if otherDraws and not draws or other != "ui" and RANK[other] > top:
            faults.append(line)
    return faults


def includes(root):
    """What each feature includes of the others."""
    used = {}
    for _, (folder, _), (other, _) in arrows(root):
        if folder in FEATURES and other in FEATURES and folder != other:
            used.setdefault(folder, set()).add(other)
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
    result = subprocess.run([FORMATTER, "--dry-run", "-Werror", *files],
                            capture_output=True, text=True)
    return result.stderr.splitlines()[:40] if result.returncode else []


def selftest(_):
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for place in ("src/core", "src/foundation", "src/volumes", "src/ui", "doc", "tests", "bench"):
            (root / place).mkdir(parents=True)
        (root / "src/core/A.cpp").write_text('#include <QWidget>\nauto x = "/proc/self";\n'
                                             '#include "volumes/B.h"\n#include "helper/F.h"\n'
                                             '#include "ui/T.h"\n')
        (root / "src/volumes/B.h").write_text('#include "core/A.h"\n#include "memory/M.h"\n')
        (root / "src/foundation/C.h").write_text('#include "core/A.h"\n')
        (root / "src/ui/T.h").write_text('#include "volumes/B.h"\n#include "core/A.h"\n')
        (root / "doc/ARCHITECTURE.md").write_text("    cleaning -> volumes\n")
        if len(layering(root)) != 7:
            faults.append(f"layering finds {layering(root)}")
        if len(features(root)) != 2:
            faults.append(f"features finds {features(root)}")
        if not formatting(root):
            faults.append("formatting finds nothing")
    return faults


if __name__ == "__main__":
    version = subprocess.run([FORMATTER, "--version"], capture_output=True, text=True).stdout
    if sys.argv[1] == "formatting" and "version 14." not in version:
        print("needs clang-format 14")
        sys.exit(77)
    found = globals()[sys.argv[1]](pathlib.Path(sys.argv[2]))
    print("\n".join(found))
    sys.exit(1 if found else 0)
