#!/usr/bin/env python3
"""Runs what docs/many-machines.md prints for GNU parallel, Slurm and Kubernetes, on one machine, as it stands there.

    many_machines.py PROGRAM ROOT

What a scheduler sets for each of its tasks is set here; GNU parallel runs itself. The members of the manifest are
compared with those that the client of Kubernetes knows, where it is installed.
"""
import importlib.util
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM, ROOT = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
del sys.argv[1:]
PAGE = (ROOT / "docs" / "many-machines.md").read_text(encoding="utf-8")
TOWNS = {"type": "FeatureCollection", "name": "towns", "features": [
    {"type": "Feature", "id": 1, "properties": {"NAME": "Abdera"}, "geometry": {"type": "Point", "coordinates": [1, 2]}}]}
CONTROL = """<T Name="Map"><L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
<E Name="Town" DataSource="Feature" Entries="Multiple"><F Name="Name" IdentityValue="NAME"/></E></L></T>"""


def blocks(kind):
    return re.findall(rf"^```{kind}\n(.*?)^```$", PAGE, flags=re.MULTILINE | re.DOTALL)


def args_of_pod():
    """The text below "args": it stands with its indentation."""
    lines = blocks("yaml")[0].split("\n")
    first = next(number for number, line in enumerate(lines) if line.strip() == "- |") + 1
    indent = re.match(" *", lines[first]).group()
    script = []
    for line in lines[first:]:
        if not line.startswith(indent):
            break
        script.append(line.removeprefix(indent))
    return "\n".join(script)


class Pages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="halvane-machines-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "out").mkdir()
        (self.folder / "list.csv").write_text(blocks("csv")[0], encoding="utf-8")
        (self.folder / "towns.geojson").write_text(json.dumps(TOWNS), encoding="utf-8")
        (self.folder / "control.xml").write_text(CONTROL, encoding="utf-8")

    def run_script(self, script, **variables):
        path = f"{PROGRAM.parent}{os.pathsep}{os.environ['PATH']}"
        done = subprocess.run(["sh", "-c", script], cwd=self.folder, capture_output=True, text=True, check=False,
                              env={**os.environ, "PATH": path, "HOME": str(self.folder), **variables})
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def expect_all_documents(self):
        for number in range(1, 9):
            self.assertIn("<Name>Abdera</Name>", (self.folder / "out" / f"{number}.xml").read_text(encoding="utf-8"))

    def expect_parts(self, run_part):
        """Each of four parts writes two documents, and none once they are there."""
        for told in ("2 exports: 2 written", "2 exports: 2 skipped"):
            for number in range(1, 5):
                self.assertEqual(run_part(number).splitlines()[-1], told)
                report = json.loads((self.folder / "out" / f"report-{number}.json").read_text(encoding="utf-8"))
                self.assertEqual([job["line"] for job in report["jobs"]], [number + 1, number + 5])
            self.expect_all_documents()

    def test_parallel_runs_the_list(self):
        if shutil.which("parallel") is None:
            self.skipTest("GNU parallel is missing")
        for script in blocks("sh parallel"):
            self.run_script(script)
            self.expect_all_documents()
            for document in (self.folder / "out").iterdir():
                document.unlink()

    def test_the_script_of_slurm_runs_a_part(self):
        script, = blocks("sh slurm")
        array = re.search(r"^#SBATCH --array=1-(\d+)$", script, re.MULTILINE).group(1)
        processors = re.search(r"^#SBATCH --cpus-per-task=(\d+)$", script, re.MULTILINE).group(1)
        self.expect_parts(lambda number: self.run_script(
            script, SLURM_ARRAY_TASK_ID=str(number), SLURM_ARRAY_TASK_COUNT=array, SLURM_CPUS_PER_TASK=processors))

    def test_the_command_of_a_pod_runs_a_part(self):
        completions = re.search(r"^  completions: (\d+)$", blocks("yaml")[0], re.MULTILINE).group(1)
        self.assertIn(f'"$number/{completions}"', args_of_pod())
        self.expect_parts(lambda number: self.run_script(args_of_pod(), JOB_COMPLETION_INDEX=str(number - 1)))

    def test_the_manifest_has_members_that_are_known(self):
        if importlib.util.find_spec("kubernetes") is None:
            self.skipTest("the client of Kubernetes is missing")
        import kubernetes  # pylint: disable=import-outside-toplevel
        import yaml  # pylint: disable=import-outside-toplevel
        manifest = yaml.safe_load(blocks("yaml")[0])
        client = kubernetes.client.ApiClient()

        class Answer:
            data = json.dumps(manifest)

        self.assertEqual(client.sanitize_for_serialization(client.deserialize(Answer, "V1Job")), manifest)


if __name__ == "__main__":
    unittest.main()
