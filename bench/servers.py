#!/usr/bin/env python3
"""Time and bytes of a run on PostgreSQL, as ratios to the same grouping query by itself.

    bench/servers.py [ROWS]     10 million by default; needs what `make test-sources` installs
"""

import os
import pathlib
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests" / "sources"))

from servers import Postgres, Wire  # noqa: E402

PROGRAM = os.environ.get("PROPORTIONS", str(ROOT / "build" / "bin" / "proportions"))
RUNS = 5


def seconds(action):
    begun = time.monotonic()
    action()
    return time.monotonic() - begun


def main():
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 10_000_000
    names = [f"v{i}" for i in range(1, 9)]
    listed = ", ".join(names)
    server = Postgres(settings=("shared_buffers=1GB", "max_wal_size=8GB"))
    values = ", ".join(f"CAST(random() < 0.{i} AS int)::smallint AS {name}" for i, name in enumerate(names, 1))
    server.sql(f"CREATE UNLOGGED TABLE t AS SELECT {values} FROM generate_series(1, {rows}); VACUUM ANALYZE t")
    wire = Wire(server.port)
    grouping = f"SELECT {listed}, COUNT(*) FROM t GROUP BY {listed}"

    def alone():
        server.sql(grouping)

    def run():
        subprocess.run([PROGRAM, server.data(wire.port), "--table", "t", "-c", f"PROPORTIONS /ONESAMPLE {listed}.", "-o", os.devnull],
                       check=True, env={**os.environ, "PROPORTIONS_ODBC_PASSWORD": server.password})

    alone(), run()
    wire.received = 0
    pairs = [(seconds(alone), seconds(run)) for _ in range(RUNS)]
    server.stop()
    own, ours = (statistics.median(each) for each in zip(*pairs))
    ratio = statistics.median(b / a for a, b in pairs)
    print(f"{rows} rows of eight binary variables in PostgreSQL")
    print(f"grouping query alone {own:.2f} s, a run {ours:.2f} s; median ratio {ratio:.3f}")
    print(f"over the wire {wire.received / RUNS:.0f} bytes a run")


if __name__ == "__main__":
    main()
