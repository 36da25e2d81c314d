#!/usr/bin/env python3
"""Runs the library's benchmarks and the baselines by turns and prints Markdown tables.

    run.py TREE [--baselines DIR] [--runs K] [--blocks N ...] [--only start|blocks|frame|server|volume]

TREE is a build tree with the benchmarks. DIR holds the baselines: gen_blocks.py, peer_blocks.py,
peer_volume.py and host.cxx with its CMakeLists.txt (default: $ZYL_BASELINES, else ../shared/bench beside the checkout).
Without them only the library's own figures are printed. A display must be there for the baselines.

Compare CPU seconds (user + system), not wall times, where the machine is not quiet."""
import argparse
import json
import os
import socket
import statistics
import subprocess
import sys
import tempfile
import time

TOP = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
LIMIT = 1200  # seconds, for one process


def run(command, environment=None):
    """Run a command: its JSON lines, and one more for the whole process. Fails if it fails."""
    with tempfile.TemporaryFile("w+") as out, tempfile.TemporaryFile("w+", errors="replace") as err:
        start = time.perf_counter()
        process = subprocess.Popen(
            ["timeout", "-k", "10", str(LIMIT)] + command, stdout=out, stderr=err,
            env={**os.environ, **(environment or {})})
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.perf_counter() - start
        out.seek(0)
        err.seek(0)
        messages = err.read()
        if status or "ERR|" in messages:
            sys.exit("%s failed (status %d):\n%s" % (" ".join(command), status, messages[-3000:]))
        records = [json.loads(line) for line in out if line.startswith("{")]
    records.append({"stage": "process", "wall": wall, "user": usage.ru_utime,
                    "sys": usage.ru_stime, "rss_mb": usage.ru_maxrss * 1024 / 1e6})
    return records


class Figures:
    """All runs of one program: median CPU seconds, wall seconds or anything else of a stage."""

    def __init__(self):
        self.stages = {}

    def add(self, records):
        for record in records:
            self.stages.setdefault(record["stage"], []).append(record)

    def cpu(self, stage):
        return statistics.median(r["user"] + r["sys"] for r in self.stages[stage])

    def median(self, stage, key):
        return statistics.median(r[key] for r in self.stages[stage])


def table(*header):
    print("\n| %s |\n|%s" % (" | ".join(header), "---|" * len(header)))


def row(*cells):
    print("| %s |" % " | ".join(c if isinstance(c, str) else "%.3g" % c for c in cells), flush=True)


def compare(name, ours, peer, target):
    ratio = ours / peer
    met = "" if target is None else "yes" if ratio <= target else "NO"
    row(name, ours, peer, "%.2f" % ratio, "" if target is None else "%.2f" % target, met)


class Bench:
    def __init__(self, args):
        self.args = args
        self.data = os.path.join(args.tree, "benchmark-data")
        os.makedirs(self.data, exist_ok=True)
        self.peer = args.baselines if os.path.isfile(
            os.path.join(args.baselines, "peer_blocks.py")) else None
        if not self.peer:
            print("No baselines in %s: the library's own figures only." % args.baselines)

    def program(self, name):
        return os.path.join(self.args.tree, "bin", name)

    def pvpython(self, script, *arguments):
        return ["pvpython", os.path.join(self.peer, script)] + list(arguments)

    def blocks_file(self, n):
        path = os.path.join(self.data, "blocks_%d.vtm" % n)
        if not os.path.isfile(path):
            subprocess.run(self.pvpython("gen_blocks.py", str(n), self.data), check=True,
                           stdout=subprocess.DEVNULL)
        return path

    def host(self):
        tree = os.path.join(self.args.tree, "baseline-host")
        for command in (["cmake", "-S", self.peer, "-B", tree, "-DCMAKE_BUILD_TYPE=Release"],
                        ["cmake", "--build", tree]):
            subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return [os.path.join(tree, "host"), "--no-mpi", "--python"]

    def start(self):
        host = self.host() if self.peer else None
        ours, peer = Figures(), Figures()
        for _ in range(3 * self.args.runs):
            ours.add(run([self.program("zylBenchStart")]))
            if host:
                peer.add(run(host))
        print("\n### Process start to first frame")
        table("stage", "CPU s", "wall s")
        for stage in ours.stages:
            row(stage, ours.cpu(stage), ours.median(stage, "wall"))
        if host:
            table("", "zyl, CPU s", "baseline, CPU s", "ratio", "target", "met")
            compare("process", ours.cpu("process"), peer.cpu("process"), 1.10)

    def blocks(self):
        if not self.peer:
            return
        for n in self.args.blocks:
            path = self.blocks_file(n)
            ours, sequential, threads, peer = Figures(), Figures(), Figures(), Figures()
            for _ in range(self.args.runs):
                ours.add(run([self.program("zylBenchBlocks"), path]))
                peer.add(run(self.pvpython("peer_blocks.py", path),
                             {"PYTHONPATH": self.peer, "PYTHONDONTWRITEBYTECODE": "1"}))
                for figures, backend in ((sequential, "Sequential"), (threads, "STDThread")):
                    figures.add(run([self.program("zylBenchBlocks"), path],
                                    {"VTK_SMP_BACKEND_IN_USE": backend}))
            self.print_blocks(n, ours, sequential, threads, peer)

    def print_blocks(self, n, ours, sequential, threads, peer):
        print("\n### %d blocks" % n)
        table("stage", "CPU s", "wall s", "CPU s, Sequential", "CPU s, STDThread", "peak RSS MB")
        for stage in ours.stages:
            if "user" in ours.stages[stage][0]:
                row(stage, ours.cpu(stage), ours.median(stage, "wall"), sequential.cpu(stage),
                    threads.cpu(stage), "%.0f" % ours.median(stage, "rss_mb"))
        table("", "zyl, CPU s", "baseline, CPU s", "ratio", "target", "met")
        first = "load + first frame"
        large = n >= 1000  # below, and for one block below 4000, the frame itself is what counts
        compare(first, ours.cpu(first), peer.cpu(first), 0.8 if large else None)
        compare("recolor a block", ours.cpu("recolor a block"),
                peer.cpu("colour a block: second ExtractBlock + representation + frame"),
                0.25 if n >= 4000 else None)
        hide = peer.cpu("hide a block: BlockSelectors (n-1) on the representation + frame")
        compare("hide a block", ours.cpu("hide a block"), hide,
                0.5 if n >= 4000 else None)
        compare("show a block", ours.cpu("show a block"), hide,
                0.5 if n >= 4000 else None)
        table("", "zyl")
        row("Update, nothing changed, ms", 1000 * ours.cpu("Update, nothing changed"))
        row("hash of all settings, ms", 1000 * ours.cpu("hash of all settings"))
        row("settings, kB a block", ours.median("settings memory", "bytes_per_block") / 1000)

    def frame(self):
        figures = Figures()
        for _ in range(self.args.runs):
            figures.add(run([self.program("zylBenchFrame")]))
        print("\n### One frame: what handing over costs")
        table("", "CPU ms a frame", "wall ms a frame")
        for stage in figures.stages:
            if stage != "process":
                count, name = stage.split(" x ", 1)
                scale = 1000 / int(count)
                row(name, scale * figures.cpu(stage), scale * figures.median(stage, "wall"))

    # Stages of zylBenchVolume with the baseline's that they are compared with and the target.
    VOLUME = (
        ("isosurface moved", ["pv Contour"], 0.40),
        ("plane cut moved", ["pv Slice"], 0.55),
        ("crinkle cut moved", ["pv Slice, crinkle"], None),
        ("clip moved", ["pv Clip", "pv ExtractSurface"], 1.0),
        ("integral", ["pv IntegrateVariables"], 1.05),
        ("100 streamlines changed", ["pv StreamTracer 100 seeds, changed"], 1.05),
        ("histogram", ["pv Histogram"], 1.05),
        ("1000 probe points moved", ["pv ResampleWithDataset 1000, points changed"], 0.20),
    )

    def volume(self):
        ours, peer = Figures(), Figures()
        for _ in range(self.args.runs):
            ours.add(run([self.program("zylBenchVolume")]))
            if self.peer:
                peer.add(run(self.pvpython("peer_volume.py", "--only", "pv"),
                             {"PYTHONPATH": self.peer, "PYTHONDONTWRITEBYTECODE": "1"}))
        print("\n### 2 026 120 tetrahedra")
        table("stage", "CPU s", "wall s", "peak RSS MB")
        for stage in ours.stages:
            row(stage, ours.cpu(stage), ours.median(stage, "wall"),
                "%.0f" % ours.median(stage, "rss_mb"))
        if self.peer:
            table("", "zyl, CPU s", "baseline, CPU s", "ratio", "target", "met")
            for stage, stages, target in self.VOLUME:
                compare(stage, ours.cpu(stage), sum(peer.cpu(s) for s in stages), target)

    def server(self):
        """What goes to the server, in each stage."""
        path = self.blocks_file(1000) if self.peer else None
        if not path:
            return
        counts = Figures()
        counts.add(run([self.program("zylBenchBlocks"), path, "--count"]))
        with socket.socket() as free:
            free.bind(("localhost", 0))
            port = free.getsockname()[1]
        server = subprocess.Popen(
            ["timeout", str(LIMIT), "pvserver", "--force-offscreen-rendering",
             "--server-port=%d" % port],
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
            env={**os.environ, "PV_PLUGIN_PATH": os.path.join(self.args.tree, "lib", "plugins")})
        try:
            next(line for line in server.stdout if line.startswith("Connection URL"))
            sent = Figures()
            sent.add(run([self.program("zylBenchBlocks"), path, "--connect",
                          "cs://localhost:%d" % port]))
        finally:
            server.terminate()
            server.wait()
        print("\n### What a session asks for, 1000 blocks")
        table("stage", "filters run", "information gathered, of that ParaView's of all the data",
              "bytes sent to a server")
        for stage in counts.stages:
            if "executions" in counts.stages[stage][0]:
                information = counts.median(stage, "information")
                data = counts.median(stage, "data_information")
                row(stage, "%d" % counts.median(stage, "executions"),
                    "%d, %d" % (information + data, data), "%d" % sent.median(stage, "sent"))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("tree")
    parser.add_argument("--baselines", default=os.environ.get(
        "ZYL_BASELINES", os.path.join(TOP, "..", "shared", "bench")))
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--blocks", type=int, nargs="+", default=[100, 1000, 4000])
    parser.add_argument("--only", nargs="+", choices=["start", "blocks", "frame", "server", "volume"],
                        default=["start", "frame", "server", "blocks", "volume"])
    bench = Bench(parser.parse_args())
    before = os.getloadavg()
    for name in bench.args.only:
        getattr(bench, name)()
    print("\nLoad average before %.1f, after %.1f, on %d cores; medians of %d runs." % (
        before[0], os.getloadavg()[0], os.cpu_count(), bench.args.runs))


main()
