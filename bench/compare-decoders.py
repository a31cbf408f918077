#!/usr/bin/env python3
"""Times ldpdecode against the decoders people use today, on the same captures.

Writes captures of one long LDP session over TCP (each TCP segment one PDU of
1 to 20 Label Mappings, a UDP hello every 50th frame) with the project's sample
writer, then runs, whole process and output thrown away:

    ldpdecode FILE              full text of every PDU and message
    ldpdecode --json FILE       every PDU and message as JSON Lines
    ldpdecode --summary FILE    totals only
    tcpdump -vv -n -r FILE
    tshark -V -r FILE

several times each and reports the medians. tcpdump and tshark are installed
from Debian with apt-get when they are missing (for this script only). Goals:
ldpdecode with full output at least 3 times faster than the faster of the
two, --summary at least 20 times faster, and --json at most 1.5 times the time
of the text output.

    bench/compare-decoders.py [--frames 20000 200000] [--runs 3] [--build DIR] [--cpu N]

With --cpu every command runs pinned to that one processor (taskset -c N).
"""
import argparse
import os
import platform
import shutil
import statistics
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def sh(cmd, **kw):
    print("+ " + " ".join(cmd), flush=True)
    subprocess.run(cmd, check=True, **kw)


def install_missing():
    missing = [p for p in ("tcpdump", "tshark") if not shutil.which(p)]
    if not missing:
        return
    sudo = [] if os.geteuid() == 0 else ["sudo"]
    env = dict(os.environ, DEBIAN_FRONTEND="noninteractive")
    sh(sudo + ["apt-get", "update", "-qq"], env=env)
    sh(sudo + ["apt-get", "install", "-y", "-qq", "--no-install-recommends"] + missing, env=env)


def build(build_dir):
    sh(["cmake", "-S", ROOT, "-B", build_dir, "-DCMAKE_BUILD_TYPE=Release", "-DLDP_BUILD_TESTS=OFF",
        "-DLDP_BUILD_BENCH=OFF"], stdout=subprocess.DEVNULL)
    sh(["cmake", "--build", build_dir, "-j", str(os.cpu_count() or 2), "--target", "ldpdecode", "ldpdecode-samples"],
       stdout=subprocess.DEVNULL)
    tools = os.path.join(build_dir, "tools", "ldpdecode")
    return os.path.join(tools, "ldpdecode"), os.path.join(tools, "ldpdecode-samples")


def seconds(cmd):
    start = time.perf_counter()
    subprocess.run(cmd, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    return time.perf_counter() - start


def median_of(cmd, runs):
    seconds(cmd)  # once to warm the page cache and the loaders
    times = [seconds(cmd) for _ in range(runs)]
    return statistics.median(times), times


def messages_in(ldpdecode, capture):
    out = subprocess.run([ldpdecode, "--summary", capture], capture_output=True, text=True, check=True).stdout
    for line in out.splitlines():
        if line.startswith("messages"):
            return int(line.split()[-1])
    return 0


def main():
    p = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    p.add_argument("--frames", type=int, nargs="+", default=[20000, 200000])
    p.add_argument("--runs", type=int, default=3)
    p.add_argument("--build", default=os.path.join(ROOT, "build", "bench-decoders"))
    p.add_argument("--cpu", type=int, help="pin every command to this processor")
    a = p.parse_args()
    pin = ["taskset", "-c", str(a.cpu)] if a.cpu is not None else []

    install_missing()
    ldpdecode, writer = build(a.build)
    captures = os.path.join(a.build, "captures")
    os.makedirs(captures, exist_ok=True)

    print(f"\nmachine: {platform.processor() or platform.machine()}, {os.cpu_count()} processors, "
          f"load average {os.getloadavg()[0]:.2f}; {a.runs} runs each, medians in seconds"
          f"{f', pinned to processor {a.cpu}' if pin else ''}\n")
    rows = []
    for frames in a.frames:
        capture = os.path.join(captures, f"ldp-session-{frames}.pcap")
        subprocess.run([writer, "bench", str(frames), capture], check=True)
        commands = {
            "ldpdecode": [ldpdecode, capture],
            "ldpdecode --json": [ldpdecode, "--json", capture],
            "ldpdecode --summary": [ldpdecode, "--summary", capture],
            "tcpdump -vv -n -r": ["tcpdump", "-vv", "-n", "-r", capture],
            "tshark -V -r": ["tshark", "-V", "-r", capture],
        }
        result = {}
        for name, cmd in commands.items():
            med, times = median_of(pin + cmd, a.runs)
            result[name] = med
            print(f"{frames:>7} frames  {name:<22} {med:8.3f}   ({', '.join(f'{t:.3f}' for t in times)})", flush=True)
        rows.append((frames, messages_in(ldpdecode, capture), os.path.getsize(capture), result))

    print()
    print(f"{'frames':>8} {'messages':>9} {'MB':>6} {'ldpdecode':>10} {'--summary':>10} {'tcpdump':>9} {'tshark':>9}"
          f" {'full x':>7} {'summary x':>10} {'json/text':>10}")
    ok = True
    for frames, msgs, size, r in rows:
        faster = min(r["tcpdump -vv -n -r"], r["tshark -V -r"])
        full_x = faster / r["ldpdecode"]
        sum_x = faster / r["ldpdecode --summary"]
        json_ratio = r["ldpdecode --json"] / r["ldpdecode"]
        ok = ok and full_x >= 3 and sum_x >= 20 and json_ratio <= 1.5
        print(f"{frames:>8} {msgs:>9} {size / 1e6:>6.1f} {r['ldpdecode']:>10.3f} {r['ldpdecode --summary']:>10.3f} "
              f"{r['tcpdump -vv -n -r']:>9.3f} {r['tshark -V -r']:>9.3f} {full_x:>7.1f} {sum_x:>10.1f}"
              f" {json_ratio:>10.2f}")
    print("\n'full x' and 'summary x': the faster of tcpdump and tshark divided by ldpdecode; goals 3 and 20.")
    print("'json/text': ldpdecode --json divided by ldpdecode (text); goal at most 1.5.")
    print("goals met" if ok else "goals not met on every file")
    return 0


if __name__ == "__main__":
    sys.exit(main())
