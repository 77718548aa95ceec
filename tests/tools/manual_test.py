"""The examples of the manual print what the manual says; `manual_test.py --write` brings the manual up to date."""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

from qxfp_case import DATA, QXFP

MANUAL = os.path.join(DATA, os.pardir, "docs", "qxfp.md")
BLOCK = re.compile(r"(?<=```console\n).*?(?=```)", re.DOTALL)
TIMING = re.compile(r"\d+\.\d\d s(, \d+ molecules/s)?$", re.MULTILINE)


def run_block(block, folder):
    """The commands of a block, each followed by what it prints now."""
    shown = ""
    environment = dict(os.environ, PATH=os.path.dirname(QXFP) + os.pathsep + os.environ["PATH"])
    for line in block.splitlines():
        if line.startswith("$ "):
            done = subprocess.run(line[2:], shell=True, cwd=folder, env=environment, timeout=300,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            shown += line + "\n" + done.stdout.decode()
    return shown


def rerun(text):
    with tempfile.TemporaryDirectory() as folder:
        for name in ("molecules.smi", "drugs.smi"):
            shutil.copy(os.path.join(DATA, name), folder)
        return BLOCK.sub(lambda match: run_block(match.group(), folder), text)


class ManualTest(unittest.TestCase):
    def test_examples_print_what_the_manual_says(self):
        with open(MANUAL, encoding="utf-8") as file:
            text = file.read()
        self.maxDiff = None
        self.assertGreater(len(BLOCK.findall(text)), 4)
        self.assertEqual(TIMING.sub("TIMING", rerun(text)), TIMING.sub("TIMING", text))


if __name__ == "__main__":
    if "--write" in sys.argv:
        with open(MANUAL, encoding="utf-8") as file:
            updated = rerun(file.read())
        with open(MANUAL, "w", encoding="utf-8") as file:
            file.write(updated)
    else:
        unittest.main()
