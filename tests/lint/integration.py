"""What the desktop needs, as it is installed: integration.py ROOT BUILD CMAKE."""
import configparser
import gzip
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml

ID = "com.norvmac.DeskSweeperPro"
EXPECTED = {
    "bin/brightsweep", "bin/brightsweep-cli", "libexec/brightsweep-helper", "libexec/brightsweep/purge",
    f"share/applications/{ID}.desktop", f"share/dbus-1/services/{ID}.service",
    f"share/metainfo/{ID}.metainfo.xml", f"share/polkit-1/actions/{ID}.policy",
    f"share/icons/hicolor/scalable/apps/{ID}.svg",
    f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg",
    "share/brightsweep/guide.html",
    "share/man/man1/brightsweep.1.gz", "share/man/man1/brightsweep-cli.1.gz",
    "share/man/man8/brightsweep-helper.8.gz", "share/man/man8/purge.8.gz",
    "share/doc/brightsweep/changelog.gz", "share/doc/brightsweep/changelog.Debian.gz",
    "share/doc/brightsweep/copyright",
}
faults = []


def check(holds, words):
    if not holds:
        faults.append(words)


def installed(build, cmake, target):
    """The prefix below `target`; the files are those of a whole build."""
    prefix = re.search(r"^CMAKE_INSTALL_PREFIX:PATH=(.*)$",
                       (build / "CMakeCache.txt").read_text(), re.M)[1]
    run = subprocess.run([cmake, "--install", str(build)], env={"DESTDIR": str(target), "PATH": "/usr/bin:/bin"},
                         capture_output=True, text=True)
    check(run.returncode == 0, "install: " + run.stderr)
    return target / prefix.lstrip("/"), prefix


def manuals(folder):
    for page in sorted(folder.rglob("*.gz")):
        shown = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", str(page)],
                               capture_output=True, text=True,
                               env={"LC_ALL": "C.UTF-8", "MANWIDTH": "80", "PATH": "/usr/bin:/bin"})
        check(shown.returncode == 0 and not shown.stderr, f"{page.name}: {shown.stderr}")
        text = re.sub("\x1b\\[[0-9;]*m|.\b", "", shown.stdout)
        check("NAME" in text and "SYNOPSIS" in text, f"{page.name}: no sections")


def options(program, root):
    """Each command's options in its help and in its section of the manual page."""
    def of(text):
        return set(re.findall(r"^ *(?:-\w, +)?--([a-z-]+)", text, re.M))

    def help(*words):
        return subprocess.run([program, *words, "--help"], capture_output=True, text=True).stdout
    page = (root / "resources/linux/man/brightsweep-cli.1").read_text().replace("\\-", "-")
    sections = {title.strip('"').split()[0]: set(re.findall(r"^\.BI? +--([a-z-]+)", text, re.M))
                for title, text in re.findall(r"^\.SS (.*)\n((?:(?!\.S[SH]).*\n)*)", page, re.M)}
    commands = re.findall(r"^  ([\w-]+)  ", help().split("Options:")[0], re.M)
    check(sorted(commands) == sorted(sections), f"commands {commands}, in the manual {sections}")
    common = of(help())
    for command in commands:
        has = of(help(command)) - common
        check(help(command).startswith(f"Usage: brightsweep-cli {command} [options]"),
              f"the help of {command} does not name it")
        check(has == sections.get(command), f"{command} has {has}, the manual {sections.get(command)}")


def names(top, prefix):
    share = top / "share"
    desktop = configparser.ConfigParser(interpolation=None, delimiters=("=",))
    desktop.optionxform = str
    desktop.read(share / f"applications/{ID}.desktop")
    entry = desktop["Desktop Entry"]
    check(entry["Icon"] == ID, "the entry's icon has another name")
    programs = {section.get("Exec", "").split()[0] for section in
                (desktop[name] for name in desktop.sections()) if "Exec" in section}
    for program in programs:
        check((top / "bin" / program).exists(), f"the entry starts {program}, which is not installed")
    actions = [name for name in entry.get("Actions", "").split(";") if name]
    for action in actions:
        check(f"Desktop Action {action}" in desktop, f"no group for the action {action}")
    service = (share / f"dbus-1/services/{ID}.service").read_text()
    check(f"Name={ID}\n" in service, "the service has another name")
    check(f"Exec={prefix}/bin/brightsweep" in service, "the service starts another program")

    info = xml.parse(share / f"metainfo/{ID}.metainfo.xml").getroot()
    check(info.findtext("id") == ID, "the metainfo has another name")
    # Later versions of the tool miss a home page, which the program has not.
    told = subprocess.run(["appstreamcli", "validate", "--no-net", "--no-color",
                           share / f"metainfo/{ID}.metainfo.xml"], capture_output=True, text=True)
    faulty = [line for line in told.stdout.splitlines() if re.match("[EW]: ", line)]
    check(told.stdout and all("url-homepage-missing" in line for line in faulty), str(faulty))
    check(info.findtext("launchable") == f"{ID}.desktop", "the metainfo starts another entry")
    policy = xml.parse(share / f"polkit-1/actions/{ID}.policy").getroot()
    actions = {action.get("id"): action for action in policy.findall("action")}
    check(set(actions) == {f"{ID}.files", f"{ID}.packages"}, "the policy has other actions")
    action = actions[f"{ID}.files"]
    helper = [note.text for note in action.iter("annotate")
              if note.get("key") == "org.freedesktop.policykit.exec.path"]
    check(helper == [f"{prefix}/libexec/brightsweep-helper"], f"the policy starts {helper}")
    for icon in (share / "icons").rglob("*.svg"):
        check(xml.parse(icon).getroot().tag.endswith("svg"), f"{icon.name} is no drawing")


def main():
    root, build, cmake = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
    version = re.search(r'programVersion\[\] = "([^"]+)"',
                        (root / "src/foundation/Identity.h").read_text())[1]
    with tempfile.TemporaryDirectory() as folder:
        top, prefix = installed(build, cmake, pathlib.Path(folder))
        files = {path.relative_to(top).as_posix() for path in top.rglob("*") if path.is_file()}
        for missing in sorted(EXPECTED - files):
            faults.append(f"not installed: {missing}")
        for further in sorted(files - EXPECTED):
            faults.append(f"installed and not expected: {further}")
        if not faults:
            names(top, prefix)
            manuals(top / "share/man")
            info = (top / f"share/metainfo/{ID}.metainfo.xml").read_text()
            check(f'<release version="{version}"' in info, "the metainfo tells of another version")
            open_heading = f"## {version} (in development)" in (root / "CHANGELOG.md").read_text()
            check(open_heading == ('type="development"' in info),
                  "metainfo and CHANGELOG.md differ on what is released")
            for page in (top / "share/man").rglob("*.gz"):
                check(f"Brightsweep {version}" in gzip.open(page, "rt").read(),
                      f"{page.name}: another version")
            options(top / "bin/brightsweep-cli", root)
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
