"""Builds one copy of the project in which every site has its switch."""
import re
import shutil
import subprocess
from pathlib import Path

from mutation.sites import rewritten

LEFT_OUT = {"build", ".git", ".cache"}


def tracked_files(root):
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=root, capture_output=True, check=True)
    return [name for name in listed.stdout.decode().split("\0") if name and (root / name).is_file()]


def write_changed(path, content):
    """Leaves a file alone that holds this already, so that it is not compiled again."""
    if path.is_file() and path.read_bytes() == content:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


def make_copy(root, copy, sites):
    by_path = {}
    for site in sites:
        by_path.setdefault(site.path, []).append(site)
    for name in tracked_files(root):
        content = (root / name).read_bytes()
        write_changed(copy / name, rewritten(content, by_path[name]) if name in by_path else content)
        shutil.copymode(root / name, copy / name)


def configure(copy, build):
    header = copy / "tools/mutation/Switch.h"
    flags = f"-O1 -g0 -w -Wno-narrowing -include {header}"
    subprocess.run(
        ["cmake", "-S", copy, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
         f"-DCMAKE_CXX_FLAGS_RELEASE={flags}", "-DROTUNDA_WERROR=OFF", "-DROTUNDA_BENCH=OFF"],
        check=True, stdout=subprocess.DEVNULL)


def lines_with_errors(output, copy, build):
    """The lines of the copy that the compiler complains of, or came from; its paths start at build."""
    found = set()
    for path, line in re.findall(r"^(\S+?):(\d+):\d+:(?: (?:fatal )?error|   required from)", output,
                                 re.MULTILINE):
        place = (build / path).resolve()
        if place.is_relative_to(copy):
            found.add((str(place.relative_to(copy)), int(line)))
    return found


def build_with_switches(root, copy, build, sites, targets, jobs):
    """Builds; leaves out the sites on lines that do not compile with a switch. Returns the rest."""
    for attempt in range(8):
        make_copy(root, copy, sites)
        if attempt == 0:
            configure(copy, build)
        done = subprocess.run(["ninja", "-C", build, "-k", "0", f"-j{jobs}", *targets],
                              capture_output=True, text=True)
        if done.returncode == 0:
            return sites
        bad = lines_with_errors(done.stdout, copy, build)
        kept = [site for site in sites if not lies_on(site, bad, root)]
        print(f"  {len(sites) - len(kept)} sites do not compile with a switch", flush=True)
        if len(kept) == len(sites):
            raise SystemExit(done.stdout[-4000:])
        sites = kept
    raise SystemExit("the copy does not build")


def lies_on(site, bad, root):
    """Whether an error was found on one of the site's lines; long statements only on their first."""
    if (site.path, site.line) in bad:
        return True
    if "\n" not in site.before and site.kind.startswith("statement"):
        return False
    text = (root / site.path).read_bytes()
    last = site.line + text.count(b"\n", site.start, site.end)
    return any((site.path, line) in bad for line in range(site.line, last + 1))
