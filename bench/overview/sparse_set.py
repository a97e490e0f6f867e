"""Makes a set of files that is as long as wanted and takes hardly any disk: zeros, with a station now and then.

    python3 bench/overview/sparse_set.py FOLDER [GIGABYTES]
"""
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests" / "e2e"))
from makers import Layout, Tone, signal, write_sparse  # noqa: E402

RATE = 10_000_000
FILE_SECONDS = 53  # 2.1 GB
PIECE = 65_536


def main(folder, gigabytes):
    folder.mkdir(parents=True, exist_ok=True)
    layout = Layout(RATE, 7_050_000)
    count = round(gigabytes * 1e9 / (FILE_SECONDS * RATE * 4))
    first = None
    for number in range(count):
        path = folder / f"long {number:03}.wav"
        first = first or path
        station = signal([Tone(1_000_000 + 10_000 * number, 6000)], RATE, 0, PIECE)
        patches = [(second * RATE, station) for second in range(0, FILE_SECONDS, 5)]
        write_sparse(path, layout, FILE_SECONDS * RATE, patches, first, number * FILE_SECONDS)
    print(f"{first}: {count} files, {count * FILE_SECONDS * RATE * 4 / 1e9:.1f} GB")


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    main(Path(sys.argv[1]), float(sys.argv[2]) if len(sys.argv) == 3 else 60.0)
