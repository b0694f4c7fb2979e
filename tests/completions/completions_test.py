"""What the completions of the shells offer, with the program as it was built.

    completions_test.py PROGRAM
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
ROOT = pathlib.Path(__file__).resolve().parents[2]
SCRIPTS = ROOT / "packaging" / "completions"
MAP = ROOT / "examples" / "world.xml"
ENVIRONMENT = {**os.environ, "PATH": f"{PROGRAM.parent}{os.pathsep}{os.environ['PATH']}"}


def bash(line):
    """What bash offers at the end of a line, as it takes the line apart."""
    words = re.findall(r"(?:\\.|[^\s=])+|=", line) + ([""] if line.endswith((" ", "=")) else [])
    quoted = " ".join("'" + word + "'" for word in words)
    script = (f"source {SCRIPTS}/halvane.bash\nCOMP_WORDS=({quoted})\nCOMP_CWORD=$((${{#COMP_WORDS[@]}} - 1))\n"
              f"COMP_LINE='{line}'\nCOMP_POINT=${{#COMP_LINE}}\n_halvane\nprintf '%s\\n' \"${{COMPREPLY[@]}}\"")
    run = subprocess.run(["bash", "-c", script], capture_output=True, text=True, env=ENVIRONMENT, cwd=ROOT, check=True)
    assert run.stderr == "", run.stderr
    return run.stdout.split()


def fish(line):
    script = f"source {SCRIPTS}/halvane.fish; complete -C '{line}'"
    run = subprocess.run(["fish", "-c", script], capture_output=True, text=True, env=ENVIRONMENT, cwd=ROOT, check=True)
    return [offer.split("\t")[0] for offer in run.stdout.splitlines()]


def options_of(subcommand):
    told = subprocess.run([PROGRAM, subcommand, "--help"], capture_output=True, text=True, check=True).stdout
    return set(re.findall(r"^\s+(?:-\w,)?(--[a-z-]+)", told, re.MULTILINE))


class Completions:
    def test_offer_the_subcommands(self):
        self.assertLessEqual({"export", "check", "preview", "describe", "init", "schema", "dialog", "help"}, set(self.offers("halvane ")))

    def test_offer_every_option_of_a_subcommand(self):
        for subcommand in ("export", "check", "preview", "describe", "init", "schema", "dialog", "help"):
            with self.subTest(subcommand):
                self.assertLessEqual(options_of(subcommand), set(self.offers(f"halvane {subcommand} --")))

    def test_offer_the_layers_of_the_map(self):
        offers = self.offers(f"halvane export --map {MAP} --select C")
        self.assertLessEqual({"Countries=", "Cities="}, set(offers))

    def test_offer_the_layers_of_the_map_behind_an_equals_sign(self):
        for subcommand in ("check", "preview"):
            self.assertIn("Cities=", self.offers(f"halvane {subcommand} --map={MAP} --select C"))

    def test_offer_what_can_be_explained(self):
        self.assertEqual(set(self.offers("halvane help pre")), {"preview"})

    def test_offer_the_schemas(self):
        self.assertEqual(set(self.offers("halvane schema control")), {"control-file.rng", "control-file.xsd", "control-file-2.xsd"})

    def test_offer_the_layers_to_begin_with(self):
        offers = self.offers(f"halvane init {MAP} --layer C")
        self.assertLessEqual({"Countries", "Cities"}, set(offers))

    def test_offer_the_fields_of_the_layer(self):
        offers = self.offers(f"halvane export --map {MAP} --select Cities=")
        self.assertIn("name", [offer.rpartition("=")[2] for offer in offers])

    def test_offer_files(self):
        self.assertIn("examples/world.xml", self.offers("halvane describe examples/world.x"))

    def test_offer_the_values_of_an_option(self):
        self.assertEqual(sorted(self.offers("halvane export --progress ")), ["auto", "json", "never"])


class OfBash(Completions, unittest.TestCase):
    offers = staticmethod(bash)

    def test_offer_layers_in_groups_and_each_name_once(self):
        city = f"--map {ROOT / 'examples' / 'city.xml'}"
        self.assertEqual(bash(f"halvane export {city} --select B"), ["Boroughs=", "Bridges="])
        self.assertEqual(bash(f"halvane export {city} --select Bridges=tol"), ["toll"])

    def test_offer_what_a_name_with_a_blank_goes_on_with(self):
        city = f"--map {ROOT / 'examples' / 'city.xml'}"
        self.assertEqual("".join(bash(f"halvane export {city} --select High\\ p")), "High\\points=")
        self.assertIn("name", bash(f"halvane export {city} --select High\\ points="))


@unittest.skipUnless(shutil.which("fish"), "fish is missing")
class OfFish(Completions, unittest.TestCase):
    offers = staticmethod(fish)

    def test_offer_the_fields_of_layers_in_groups_and_of_no_table(self):
        city = f"--map {ROOT / 'examples' / 'city.xml'}"
        self.assertEqual(fish(f"halvane export {city} --select Bridges=tol"), ["Bridges=toll"])
        self.assertEqual(fish(f"halvane export {city} --select High\\ points=happened"), [])


if __name__ == "__main__":
    unittest.main()
