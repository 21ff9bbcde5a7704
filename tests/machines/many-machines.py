#!/usr/bin/env python3
"""Tests fonts on three hosts in network namespaces, as docs/many-machines.md shows it, kills one of them and then the
whole run in the middle, goes on, and holds the merged report against that of one run: nothing is lost, nothing is there
twice. Ends with 77 where such hosts cannot be made.

many-machines.py PROGRAM SLOW_PROGRAM SAMPLE DOCUMENT

SLOW_PROGRAM is the same program, which takes its time over files called slow.ttf.
"""

import contextlib
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

SKIP = 77
HOSTS = ["one", "two", "three"]
LISTS, FONTS = 24, 5


def call(*command, **options):
    return subprocess.run(command, check=True, text=True, capture_output=True, **options).stdout


def in_own_namespaces():
    """Starts this script again where it can make networks that end with it."""
    missing = [name for name in ("ip", "unshare", "ssh", "ssh-keygen", "parallel", "sshd")
               if not shutil.which(name, path=os.environ["PATH"] + ":/usr/sbin:/sbin")]
    unshare = ["unshare", "--net", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc"]
    if missing or os.geteuid() != 0 or subprocess.run(unshare + ["true"], capture_output=True, check=False).returncode:
        print("skipped: hosts cannot be made here without", ", ".join(missing) or "root and network namespaces")
        sys.exit(SKIP)
    sys.exit(subprocess.run(unshare + [sys.executable, *sys.argv, "inside"], check=False).returncode)


def make_hosts(folder):
    """Makes the hosts, each with a server; returns the command for a shell on one of them."""
    for place in ("/run/netns", "/run/sshd"):
        os.makedirs(place, exist_ok=True)
        call("mount", "-t", "tmpfs", "-o", "mode=755", "tmpfs", place)
    for key in ("host", "user"):
        call("ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", folder / key)
    (folder / "sshd").write_text(
        f"HostKey {folder}/host\nAuthorizedKeysFile {folder}/user.pub\nStrictModes no\nUsePAM no\n"
        "PermitRootLogin prohibit-password\nPidFile none\nMaxStartups 100\n"
        f"SetEnv HOME={folder}\n")  # where no profile does anything
    config = [f"IdentityFile {folder}/user", "StrictHostKeyChecking no", "UserKnownHostsFile /dev/null",
              "LogLevel ERROR"]
    call("ip", "link", "add", "bridge", "type", "bridge")
    call("ip", "address", "add", "10.77.0.254/24", "dev", "bridge")
    call("ip", "link", "set", "bridge", "up")
    for number, host in enumerate(HOSTS, 1):
        call("ip", "netns", "add", host)
        call("ip", "link", "add", f"to-{host}", "type", "veth", "peer", "name", "net", "netns", host)
        call("ip", "link", "set", f"to-{host}", "master", "bridge", "up")
        call("ip", "-n", host, "address", "add", f"10.77.0.{number}/24", "dev", "net")
        call("ip", "-n", host, "link", "set", "net", "up")
        call("ip", "netns", "exec", host, shutil.which("sshd", path="/usr/sbin:/sbin"), "-f", folder / "sshd")
        config.append(f"Host {host}\n  HostName 10.77.0.{number}")
    (folder / "ssh").write_text("\n".join(config) + "\n")
    return f"ssh -F {folder}/ssh"


def make_fonts(folder, sample):
    for number in range(LISTS):
        place = folder / "fonts" / str(number)
        place.mkdir(parents=True)
        for name in [f"{font}.ttf" for font in range(FONTS)] + ["slow.ttf"]:
            shutil.copy(sample, place / name)
    (folder / "fonts/0/none.ttf").symlink_to("nowhere")
    return sorted(str(path) for path in (folder / "fonts").glob("*/*"))


def lines(text):
    """Reports by path, without times."""
    text = re.sub(r'"kVornFontTestTimeStampKey":"[^"]*"', "", text)
    paths = [json.loads(line)["path"] if "Stamp" in line else re.match(r'{"path":"([^"]*)"', line).group(1)
             for line in text.splitlines()]
    assert len(paths) == len(set(paths)), "a file is there twice"
    return dict(zip(paths, text.splitlines()))


def commands_of(document):
    """The commands that the document shows, in order."""
    return re.findall(r"^```sh\n(.*?)^```$", pathlib.Path(document).read_text(encoding="utf-8"), re.S | re.M)


def wait_until(condition, run):
    while not condition():
        assert run.poll() is None, "the run ended too soon"
        time.sleep(0.01)


def main(program, slow_program, sample, document):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        shell = make_hosts(folder)
        fonts = make_fonts(folder, sample)
        (folder / "fonts.list").write_text("\n".join(fonts) + "\n")
        (folder / "hosts").write_text("".join(f"2/{host}\n" for host in HOSTS))
        (folder / "bin").mkdir()
        (folder / "bin/vorn-font-test").symlink_to(slow_program)
        environment = dict(os.environ, PARALLEL_SSH=shell, HOME=name, PATH=f"{folder}/bin:{os.environ['PATH']}")
        (folder / ".parallel").mkdir()
        (folder / ".parallel/will-cite").touch()
        split, spread, again, merge = commands_of(document)
        split = split.replace("1000", str(FONTS + 1))
        spread, again = (text.replace("vorn-font-test", f"{folder}/bin/vorn-font-test") for text in (spread, again))
        call("sh", "-ec", split, cwd=folder, env=environment)

        def pids(host):
            return [int(pid) for pid in call("ip", "netns", "pids", host).split()]

        def name_of(pid):
            try:
                return pathlib.Path(f"/proc/{pid}/comm").read_text(encoding="utf-8")
            except OSError:  # it has ended meanwhile
                return ""

        def is_testing(host):
            return any(name_of(pid).startswith("vorn-font") for pid in pids(host))

        def jobs_done():
            log = folder / "jobs.log"
            return len(log.read_text().splitlines()) - 1 if log.exists() else 0

        # A host dies while it tests; later the run itself.
        run = subprocess.Popen(["sh", "-ec", "exec " + spread.strip()], cwd=folder, env=environment,
                               start_new_session=True)
        wait_until(lambda: is_testing("two"), run)
        while running := pids("two"):
            for pid in running:
                with contextlib.suppress(ProcessLookupError):
                    os.kill(pid, signal.SIGKILL)
        wait_until(lambda: jobs_done() >= LISTS // 2, run)
        os.killpg(run.pid, signal.SIGKILL)
        run.wait()
        done = jobs_done()
        assert 0 < done < LISTS, done

        call("sh", "-ec", again, cwd=folder, env=environment)
        merged = subprocess.run(["sh", "-ec", merge.replace("json -o report.json", "jsonl -o report.json")], cwd=folder,
                                env=dict(environment, PATH=f"{pathlib.Path(program).parent}:{os.environ['PATH']}"),
                                capture_output=True, text=True, check=False)
        alone = subprocess.run([slow_program, "-f", "jsonl", "--files-from", folder / "fonts.list"], capture_output=True,
                               text=True, check=False)
        assert merged.returncode == alone.returncode == 2, (merged.returncode, alone.returncode)
        assert merged.stderr == alone.stderr, merged.stderr
        here, there = lines((folder / "report.json").read_text()), lines(alone.stdout)
        different = [path for path in here.keys() | there.keys() if here.get(path) != there.get(path)]
        assert not different, f"{len(different)} reports are not those of one run, such as\n" + "\n".join(
            str(reports.get(different[0])) for reports in (here, there))
        log = (folder / "jobs.log").read_text()
        print(f"{len(fonts)} files, {done} of {LISTS} jobs before the end, then all; hosts of the log:",
              sorted({row.split("\t")[1] for row in log.splitlines()[1:]}))


if __name__ == "__main__":
    if sys.argv[5:] != ["inside"]:
        in_own_namespaces()
    main(*sys.argv[1:5])
