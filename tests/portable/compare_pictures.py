#!/usr/bin/env python3
"""compare_pictures.py MOST FOLDER FOLDER: raw pictures of the same names, channel by channel. Rounding may differ by 2 of 255 anywhere;
more than that, where an edge falls between two pixels otherwise, at MOST (a share, such as 0.01) of the pixels of each picture."""
import os
import sys

SAME = 2

most, one, other = float(sys.argv[1]), *sys.argv[2:]
names = sorted(os.listdir(one))
if not names or names != sorted(os.listdir(other)):
    sys.exit(f"{one} and {other} do not hold the same pictures")
failed = False
for name in names:
    first, second = (open(os.path.join(folder, name), "rb").read() for folder in (one, other))
    if len(first) != len(second):
        sys.exit(f"{name}: {len(first)} bytes here, {len(second)} there")
    far = [max(abs(first[at + c] - second[at + c]) for c in range(3)) for at in range(0, len(first), 4)]
    apart = sum(difference > SAME for difference in far) / len(far)
    failed |= apart > most
    print(f"{name}: largest difference {max(far)}, {100 * apart:.2f} % of the pixels differ by more than {SAME}")
sys.exit(1 if failed else 0)
