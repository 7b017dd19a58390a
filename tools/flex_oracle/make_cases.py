#!/usr/bin/env python3
"""Lets headless Chromium lay out random flex trees and writes the rectangles as a test file.

usage: make_cases.py SEED COUNT OUTPUT

A line of the output is one tree: its boxes in preorder, apart by blanks, each as depth|style|x,y,width,height."""
import html
import os
import re
import subprocess
import sys
import tempfile

PAGE = """<!doctype html><meta charset="utf-8"><style>
#room {{ position: absolute; left: 0; top: 0; width: 600px; height: 400px; }}
#room div {{ display: flex; box-sizing: border-box; position: relative; margin: 0; padding: 0; border: 0 solid; min-width: auto; min-height: auto; }}
</style><div id="room"></div><pre id="out"></pre><script>{script}
document.getElementById('out').textContent = runTrees({seed}, {count});
document.getElementById('room').remove();
</script>"""


def main():
    seed, count, output = int(sys.argv[1]), int(sys.argv[2]), sys.argv[3]
    here = os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(here, "trees.js"), encoding="utf-8") as file:
        script = file.read()
    with tempfile.TemporaryDirectory() as folder:
        page = os.path.join(folder, "page.html")
        with open(page, "w", encoding="utf-8") as file:
            file.write(PAGE.format(script=script, seed=seed, count=count))
        command = ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--dump-dom", "--virtual-time-budget=100000", "file://" + page]
        dom = subprocess.run(command, capture_output=True, text=True, check=True).stdout
    trees = html.unescape(re.search(r'<pre id="out">(.*?)</pre>', dom, re.S).group(1)).strip()
    if len(trees.splitlines()) != count:
        sys.exit(f"{count} trees were expected, {len(trees.splitlines())} came")
    with open(output, "w", encoding="utf-8") as file:
        file.write(trees + "\n")


main()
