#!/usr/bin/python3
"""The dialog as a person uses it: window_test.py PROGRAM PROCESSORS [TEST…], on an X screen with a message bus.

With HALVANE_PICTURES naming a folder, pictures of the screen are put there.
"""
import datetime
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

from desktop import Atspi, Dialog, children, descendants, extents, has_state, labels_of, role_of, text_of, wait_until

EXAMPLES = pathlib.Path(__file__).resolve().parents[3] / "examples"
PROGRAM, PROCESSORS = sys.argv[1:3]
TIMES = os.environ.get("HALVANE_TIMES")
PICTURES = os.environ.get("HALVANE_PICTURES")

CONTROL, FOLDER, NAME, OPTIONAL, PATH = BOXES = [
    "Control XML File", "Output Directory", "Output XML File Name", "Optional XML", "XML Node Path"]
FIRST_PATH = "//VandraConfig/TemplateView/QvLayers/QvLayer"
BROWSE = {CONTROL: "Choose the control XML file", FOLDER: "Choose the output directory",
          OPTIONAL: "Choose the optional XML file"}
TAB_ORDER = [CONTROL, BROWSE[CONTROL], FOLDER, BROWSE[FOLDER], NAME, OPTIONAL, BROWSE[OPTIONAL], PATH, "OK", "Cancel"]
LONG = f"""<Out Name="Out"><L Name="L" DataSource="MapLayer" Identity="LayerName" IdentityValue="Countries">
<Each Name="Each" DataSource="Feature" Entries="Multiple">
{'<P Name="P" DataSource="External" IdentityValue="Test.Waiting"/>' * 8}</Each></L></Out>"""


def golden(name):
    """The document that the same export by the command line writes."""
    text = (EXAMPLES / "expected" / f"{name}.xml").read_bytes()
    today = datetime.date.today().strftime("%m/%d/%Y")
    return text.replace(b"TODAY", today.encode()).replace(b"EXAMPLES", str(EXAMPLES).encode())


class WindowTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        if TIMES:
            started = time.monotonic()
            self.addCleanup(lambda: print(f"{time.monotonic() - started:6.2f} s {self.id()}", file=sys.stderr))
        self.environment = dict(os.environ, XDG_CONFIG_HOME=str(self.folder / "settings"))

    def open(self, *arguments, folder=None, **environment):
        dialog = Dialog(PROGRAM, *arguments, environment=dict(self.environment, **environment), folder=folder)
        self.addCleanup(dialog.close)
        return dialog

    def fill(self, dialog, control, name="out.xml"):
        dialog.fill(CONTROL, str(control))
        dialog.fill(FOLDER, str(self.folder))
        dialog.fill(NAME, name)

    def written(self, name="out.xml"):
        return (self.folder / name).read_bytes()

    def picture(self, dialog, name):
        if PICTURES:
            dialog.picture(pathlib.Path(PICTURES) / f"{name}.png")


class FirstSight(WindowTest):
    def test_shows_empty_boxes_a_node_path_and_no_strip(self):
        dialog = self.open(EXAMPLES / "world.xml")
        self.assertEqual([dialog.content(box) for box in BOXES], ["", "", "", "", FIRST_PATH])
        self.assertEqual(dialog.focused(), CONTROL)
        self.assertIsNone(dialog.find("text", "Outcome of the export"))
        self.assertIsNone(dialog.find("progress bar", "The export is running"))
        self.picture(dialog, "first-sight")

    def test_puts_the_rows_beneath_one_another_with_their_labels_and_buttons(self):
        dialog = self.open()
        tops = [extents(dialog.box(box))[1] for box in BOXES]
        self.assertEqual(tops, sorted(tops))
        for box in BOXES:
            self.assertEqual(labels_of(dialog.box(box)), [box])
        for box, button in BROWSE.items():
            _, top, _, height = extents(dialog.find("push button", button))
            _, box_top, _, box_height = extents(dialog.box(box))
            self.assertLess(abs(top + height / 2 - box_top - box_height / 2), 3, button)

    def test_names_everything_that_a_screen_reader_stops_at(self):
        dialog = self.open()
        nameless = [role_of(a) for a in descendants(dialog.form)
                    if has_state(a, Atspi.StateType.FOCUSABLE) and has_state(a, Atspi.StateType.SHOWING)
                    and not a.get_name()]
        self.assertEqual(nameless, [])
        read = [a.get_name() for a in descendants(dialog.form) if a.get_name() in TAB_ORDER
                and role_of(a) != "label"]
        self.assertEqual(read, TAB_ORDER)

    def test_is_twice_as_large_for_those_who_need_it(self):
        sizes = []
        for factor in ("1", "2"):
            dialog = self.open(EXAMPLES / "world.xml", QT_SCALE_FACTOR=factor)
            left, top, width, height = extents(dialog.form)
            inside = [a for a in descendants(dialog.form) if a.get_name() in TAB_ORDER
                      and role_of(a) in ("text", "label", "push button")]
            self.assertEqual(len(inside), len(TAB_ORDER) + len(BOXES), "the labels are named as their boxes")
            for item in inside:
                x, y, w, h = extents(item)
                self.assertTrue(left <= x and x + w <= left + width and top <= y and y + h <= top + height,
                                f"{role_of(item)} {item.get_name()}")
            sizes.append(dialog.pixels())
            self.picture(dialog, f"scale-{factor}")
            dialog.close()
        for once, twice in zip(*sizes):
            self.assertAlmostEqual(twice / once, 2, delta=0.05, msg=sizes)


class Keyboard(WindowTest):
    def test_tab_goes_from_top_to_bottom(self):
        dialog = self.open()
        seen = [dialog.focused()]
        for expected in TAB_ORDER[1:]:
            dialog.key("Tab")
            wait_until(lambda: dialog.focused() == expected, f'the focus on "{expected}" after {seen}')
            seen.append(expected)

    def test_letters_lead_to_the_boxes(self):
        dialog = self.open()
        for letter, box in zip("ndxfc", [PATH, FOLDER, OPTIONAL, NAME, CONTROL]):
            dialog.key(f"alt+{letter}")
            wait_until(lambda: dialog.focused() == box, f"alt+{letter} to reach {box}")

    def test_escape_cancels(self):
        dialog = self.open()
        dialog.key("Escape")
        self.assertEqual(dialog.exit_code(), 0)

    def test_enter_presses_cancel(self):
        dialog = self.open(EXAMPLES / "world.xml")
        self.fill(dialog, EXAMPLES / "countries.xml")
        for expected in TAB_ORDER[5:]:
            dialog.key("Tab")
            wait_until(lambda: dialog.focused() == expected, f'the focus on "{expected}"')
        dialog.key("Return")
        self.assertEqual(dialog.exit_code(), 0)
        self.assertFalse((self.folder / "out.xml").exists())

    def test_cancel_closes_the_dialog_and_writes_nothing(self):
        dialog = self.open(EXAMPLES / "world.xml")
        self.fill(dialog, EXAMPLES / "countries.xml")
        dialog.press("Cancel")
        self.assertEqual(dialog.exit_code(), 0)
        self.assertFalse((self.folder / "out.xml").exists())


class Checks(WindowTest):
    def test_asks_for_one_thing_after_the_other_and_stays_open(self):
        dialog = self.open(EXAMPLES / "world.xml")
        dialog.key("Return")
        self.assertEqual(dialog.dismiss("Please select the control XML file."), ["OK"])
        dialog.fill(CONTROL, str(EXAMPLES / "countries.xml"))
        dialog.key("Return")
        dialog.dismiss("Please select the output path.")
        dialog.fill(FOLDER, str(self.folder))
        dialog.press("OK")
        dialog.message("Please type the output file name.")
        self.picture(dialog, "message")
        dialog.dismiss("Please type the output file name.")
        dialog.fill(NAME, "out.xml")
        dialog.key("Return")
        dialog.wait_for_outcome("Wrote ")
        self.assertEqual(self.written(), golden("countries"))

    def test_takes_blanks_for_nothing(self):
        dialog = self.open()
        dialog.fill(CONTROL, "   ")
        dialog.key("Return")
        dialog.dismiss("Please select the control XML file.")

    def test_refuses_a_file_name_with_a_folder_and_empties_its_box(self):
        dialog = self.open(EXAMPLES / "world.xml")
        self.fill(dialog, EXAMPLES / "countries.xml", "sub\\out.xml")
        dialog.key("Return")
        dialog.message("Invalid output file name.")
        self.assertEqual(dialog.content(NAME), "sub\\out.xml")
        dialog.dismiss("Invalid output file name.")
        self.assertEqual(dialog.content(NAME), "")
        self.assertEqual(dialog.content(CONTROL), str(EXAMPLES / "countries.xml"))
        self.assertEqual([path.name for path in self.folder.iterdir() if path.suffix == ".xml"], [])


    def test_ends_amid_a_message_when_the_program_is_asked_to(self):
        dialog = self.open()
        dialog.key("Return")
        dialog.message("Please select the control XML file.")
        dialog.process.terminate()
        self.assertEqual(dialog.exit_code(), 0)


class Exports(WindowTest):
    def test_writes_what_the_command_line_writes_and_stays_open(self):
        dialog = self.open(EXAMPLES / "world.xml")
        self.fill(dialog, EXAMPLES / "countries.xml", "countries")
        dialog.key("Return")
        lines = dialog.wait_for_outcome("Wrote ")
        self.assertEqual(lines, [f"Wrote {self.folder}/countries.xml (176 items)"])
        self.assertEqual(self.written("countries.xml"), golden("countries"))
        self.picture(dialog, "written")
        self.assertIsNone(dialog.process.poll())
        self.assertEqual(dialog.content(NAME), "countries")
        self.assertEqual(dialog.focused(), NAME)
        dialog.fill(CONTROL, str(EXAMPLES / "continents.xml"))
        dialog.fill(NAME, "continents.xml")
        dialog.press("OK")
        dialog.wait_for_outcome("continents.xml")
        self.assertEqual(self.written("continents.xml"), golden("continents"))

    def test_takes_tags_from_the_optional_document(self):
        dialog = self.open(EXAMPLES / "world.xml")
        self.fill(dialog, EXAMPLES / "cities-by-tag.xml")
        dialog.fill(OPTIONAL, str(EXAMPLES / "tags.xml").replace("/", "\\"))
        dialog.key("Return")
        dialog.wait_for_outcome("Wrote ")
        self.assertEqual(self.written(), golden("cities-by-tag"))

    def test_ignores_the_node_path_without_an_optional_document(self):
        dialog = self.open(EXAMPLES / "world.xml")
        self.fill(dialog, EXAMPLES / "countries.xml")
        dialog.fill(PATH, "[no path")
        dialog.key("Return")
        self.assertEqual(len(dialog.wait_for_outcome("Wrote ")), 1)
        self.assertEqual(self.written(), golden("countries"))

    def test_takes_either_slash_and_blanks_around(self):
        dialog = self.open(EXAMPLES / "world.xml")
        dialog.fill(CONTROL, "  " + str(EXAMPLES / "countries.xml").replace("/", "\\") + " ")
        dialog.fill(FOLDER, str(self.folder).replace("/", "\\") + "\\ ")
        dialog.fill(NAME, " out.xml  ")
        dialog.key("Return")
        dialog.wait_for_outcome("Wrote ")
        self.assertEqual(self.written(), golden("countries"))

    def test_runs_without_a_map(self):
        dialog = self.open(folder=EXAMPLES)
        self.fill(dialog, EXAMPLES / "without-map.xml")
        dialog.key("Return")
        dialog.wait_for_outcome("Wrote ")
        self.assertEqual(self.written(), golden("without-map"))

    def test_selects_features_and_loads_processors_as_the_command_line_does(self):
        dialog = self.open(EXAMPLES / "world.xml", "--select", "Countries=iso_a3 IN ('NZL', 'LUX')",
                           "--select", "Cities=207,1")
        self.fill(dialog, EXAMPLES / "outlines.xml")
        dialog.key("Return")
        dialog.wait_for_outcome("Wrote ")
        self.assertEqual(self.written(), golden("outlines"))

    def test_remembers_the_boxes_of_the_last_ok(self):
        dialog = self.open(EXAMPLES / "world.xml")
        self.fill(dialog, EXAMPLES / "countries.xml")
        dialog.fill(PATH, "//q")
        dialog.key("Return")
        dialog.wait_for_outcome("Wrote ")
        dialog.fill(NAME, "never")
        dialog.press("Cancel")
        dialog.exit_code()
        again = self.open(EXAMPLES / "world.xml")
        self.assertEqual([again.content(box) for box in BOXES],
                         [str(EXAMPLES / "countries.xml"), str(self.folder), "out.xml", "", "//q"])

    def test_opens_the_folder_of_the_document(self):
        programs = self.folder / "bin"
        programs.mkdir()
        opener = programs / "xdg-open"
        opener.write_text(f'#!/bin/sh\necho "$1" > "{self.folder}/opened"\n', encoding="utf-8")
        opener.chmod(0o755)
        dialog = self.open(EXAMPLES / "world.xml", PATH=f"{programs}:{os.environ['PATH']}")
        self.fill(dialog, EXAMPLES / "countries.xml")
        dialog.key("Return")
        dialog.wait_for_outcome("Wrote ")
        dialog.press("Open Folder")
        opened = self.folder / "opened"
        wait_until(lambda: opened.exists() and opened.read_text(encoding="utf-8").strip(), "the opener")
        self.assertEqual(opened.read_text(encoding="utf-8").strip().rstrip("/"), f"file://{self.folder}")


    def test_enter_opens_the_folder_and_writes_nothing_anew(self):
        programs = self.folder / "bin"
        programs.mkdir()
        opener = programs / "xdg-open"
        opener.write_text(f'#!/bin/sh\necho "$1" > "{self.folder}/opened"\n', encoding="utf-8")
        opener.chmod(0o755)
        dialog = self.open(EXAMPLES / "world.xml", PATH=f"{programs}:{os.environ['PATH']}")
        self.fill(dialog, EXAMPLES / "countries.xml")
        dialog.key("Return")
        dialog.wait_for_outcome("Wrote ")
        (self.folder / "out.xml").write_text("as it was", encoding="utf-8")
        dialog.key("alt+c")
        wait_until(lambda: dialog.focused() == CONTROL, "the first box")
        for expected in TAB_ORDER[1:] + ["Outcome of the export", "Open Folder"]:
            dialog.key("Tab")
            wait_until(lambda: dialog.focused() == expected, f'the focus on "{expected}"')
        dialog.key("Return")
        opened = self.folder / "opened"
        wait_until(lambda: opened.exists() and opened.read_text(encoding="utf-8").strip(), "the opener")
        self.assertEqual(self.written(), b"as it was")


class Failures(WindowTest):
    def test_tells_node_by_node_what_failed_with_the_line(self):
        control = self.folder / "control.xml"
        control.write_text('<Out Name="Out">\n<P Name="P" DataSource="External" IdentityValue="No.One"/>\n'
                           '<L Name="L" DataSource="MapLayer" Identity="LayerName" IdentityValue="Nowhere"/>\n</Out>',
                           encoding="utf-8")
        dialog = self.open(EXAMPLES / "world.xml")
        self.fill(dialog, control)
        dialog.key("Return")
        lines = dialog.wait_for_outcome("1 control node failed; the document is incomplete")
        self.assertTrue(lines[1].startswith('control.xml:2: error: "P": '), lines)
        self.assertTrue(lines[2].startswith('control.xml:3: note: "L": '), lines)
        self.assertEqual(children(dialog.application), [dialog.form], "no message box")
        self.assertIsNotNone(dialog.find("push button", "Open Folder"))
        self.picture(dialog, "incomplete")

    def test_tells_why_nothing_was_written(self):
        dialog = self.open(EXAMPLES / "world.xml")
        self.fill(dialog, self.folder / "missing.xml")
        dialog.key("Return")
        dialog.wait_for_outcome("missing.xml: there is no such file")
        self.assertEqual(children(dialog.application), [dialog.form], "no message box")
        self.assertIsNone(dialog.find("push button", "Open Folder"))
        self.picture(dialog, "not-written")
        dialog.fill(CONTROL, str(EXAMPLES / "countries.xml"))
        dialog.fill(FOLDER, str(self.folder / "nowhere"))
        dialog.key("Return")
        dialog.wait_for_outcome(f'Output Directory: there is no folder "{self.folder / "nowhere"}"; create it first')

    def test_tells_of_an_optional_document_that_cannot_be_read(self):
        dialog = self.open(EXAMPLES / "world.xml")
        self.fill(dialog, EXAMPLES / "countries.xml")
        dialog.fill(OPTIONAL, str(self.folder / "missing.xml"))
        dialog.key("Return")
        dialog.wait_for_outcome("warning: missing.xml: ")
        self.assertEqual(self.written(), golden("countries"))


class LongExports(WindowTest):
    def start(self):
        control = self.folder / "control.xml"
        control.write_text(LONG, encoding="utf-8")
        dialog = self.open(EXAMPLES / "world.xml", "--processor", PROCESSORS)
        self.fill(dialog, control)
        # Found beforehand: while the export runs, each look takes its time.
        self.bar = dialog.find("progress bar", "The export is running", showing=False)
        self.cancel = dialog.find("push button", "Cancel Export", showing=False)
        self.name, self.ok, self.leave = dialog.box(NAME), *(dialog.find("push button", b) for b in ("OK", "Cancel"))
        self.before = [dialog.content(box) for box in BOXES]
        dialog.key("Return")
        wait_until(lambda: has_state(self.bar, Atspi.StateType.SHOWING), "the progress bar")
        return dialog

    def test_can_be_cancelled_and_begun_again(self):
        dialog = self.start()
        self.assertFalse(has_state(self.name, Atspi.StateType.ENABLED))
        self.picture(dialog, "running")
        dialog.click(self.cancel)
        dialog.wait_for_outcome("cancelled")
        self.assertFalse((self.folder / "out.xml").exists())
        self.assertFalse(has_state(self.bar, Atspi.StateType.SHOWING))
        wait_until(lambda: dialog.focused() == NAME, "the focus where it was")
        dialog.fill(CONTROL, str(EXAMPLES / "countries.xml"))
        dialog.key("Return")
        dialog.wait_for_outcome("Wrote ")
        self.assertEqual(self.written(), golden("countries"))

    def test_counts_the_items(self):
        dialog = self.start()
        row = self.bar.get_parent()
        wait_until(lambda: any(a.get_name().endswith(" items") for a in children(row)), "the items")
        dialog.key("Escape")
        dialog.wait_for_outcome("cancelled")

    def test_escape_cancels_the_export_not_the_dialog(self):
        dialog = self.start()
        dialog.key("Escape")
        dialog.wait_for_outcome("cancelled")
        self.assertIsNone(dialog.process.poll())

        def closed():  # a key just after the end is taken for one that was to cancel
            dialog.key("Escape")
            return dialog.process.poll() is not None

        wait_until(closed, "Escape to close the dialog")
        self.assertEqual(dialog.exit_code(), 0)

    def test_space_presses_the_button_that_cancels(self):
        dialog = self.start()
        wait_until(lambda: has_state(self.cancel, Atspi.StateType.FOCUSED), "the focus on the button")
        dialog.key("space")
        dialog.wait_for_outcome("cancelled")

    def test_enter_presses_the_button_that_cancels(self):
        dialog = self.start()
        wait_until(lambda: has_state(self.cancel, Atspi.StateType.FOCUSED), "the focus on the button")
        dialog.key("Return")
        dialog.wait_for_outcome("cancelled")
        wait_until(lambda: dialog.focused() == NAME, "the focus where it was")
        dialog.fill(CONTROL, str(EXAMPLES / "countries.xml"))
        dialog.key("Return")
        dialog.wait_for_outcome("Wrote ")
        self.assertEqual(self.written(), golden("countries"))

    def test_runs_to_its_end_whatever_is_typed_meanwhile(self):
        dialog = self.start()
        dialog.click(self.leave)
        dialog.click(self.ok)
        dialog.click(self.name)
        dialog.key("x", "y")
        lines = dialog.wait_for_outcome("Wrote ")
        self.assertEqual(lines, [f"Wrote {self.folder}/out.xml (176 items)"])
        self.assertEqual(self.written().count(b"<P>waited</P>"), 8 * 176)
        self.assertEqual([dialog.content(box) for box in BOXES], self.before)

    def test_ends_in_order_when_the_program_is_asked_to(self):
        dialog = self.start()
        dialog.process.terminate()
        self.assertEqual(dialog.exit_code(), 0)
        self.assertEqual([path.name for path in self.folder.iterdir() if path.is_file()], ["control.xml"])


class Browsing(WindowTest):
    def setUp(self):
        super().setUp()
        for name in ("control.xml", "notes.txt"):
            (self.folder / name).write_text("<a/>", encoding="utf-8")

    def open_file_dialog(self, dialog, box):
        dialog.fill(CONTROL, str(self.folder) + "/")
        dialog.press(BROWSE[box])
        window = dialog.window("Open")
        dialog.focus(window)
        return window

    def shown_files(self, window):
        return {a.get_name() for a in descendants(window, entries=True)
                if role_of(a) in ("table cell", "list item")}

    def choose(self, dialog, window, path):
        dialog.fill("File name:", str(path), window)
        dialog.key("Return")
        wait_until(lambda: window not in children(dialog.application), "the end of the file dialog")
        dialog.focus(dialog.form)

    def test_shows_xml_files_for_the_control_file(self):
        dialog = self.open()
        window = self.open_file_dialog(dialog, CONTROL)
        wait_until(lambda: "control.xml" in self.shown_files(window), "the control file in the list")
        self.assertNotIn("notes.txt", self.shown_files(window))
        self.assertIn("XML Files (.xml)", [a.get_name() for a in descendants(window)])
        self.picture(dialog, "open-control")
        self.choose(dialog, window, self.folder / "control.xml")
        self.assertEqual(dialog.content(CONTROL), str(self.folder / "control.xml"))
        self.assertEqual(dialog.content(OPTIONAL), "")

    def test_shows_every_file_for_the_optional_document(self):
        dialog = self.open()
        window = self.open_file_dialog(dialog, OPTIONAL)
        wait_until(lambda: "notes.txt" in self.shown_files(window), "the other file in the list")
        self.assertIn("XML Files (.xml)", [a.get_name() for a in descendants(window)])
        self.picture(dialog, "open-optional")
        self.choose(dialog, window, self.folder / "notes.txt")
        self.assertEqual(dialog.content(OPTIONAL), str(self.folder / "notes.txt"))

    def test_leaves_the_box_alone_when_nothing_is_chosen(self):
        dialog = self.open()
        window = self.open_file_dialog(dialog, CONTROL)
        dialog.key("Escape")
        wait_until(lambda: window not in children(dialog.application), "the end of the file dialog")
        self.assertEqual(dialog.content(CONTROL), str(self.folder) + "/")

    def test_enter_is_ok_after_a_file_was_chosen(self):
        dialog = self.open()
        window = self.open_file_dialog(dialog, CONTROL)
        self.choose(dialog, window, self.folder / "control.xml")
        dialog.key("Return")
        self.assertEqual(dialog.dismiss("Please select the output path."), ["OK"])

    def browse(self, dialog, path):
        dialog.press(BROWSE[FOLDER])
        window = dialog.window("Select Output Path")
        dialog.focus(window)
        dialog.fill("Path", str(path), window)
        self.picture(dialog, "browse")
        dialog.key("Return")
        wait_until(lambda: window not in children(dialog.application), "the end of the browse dialog")

    def test_leaves_the_folder_alone_when_nothing_is_chosen(self):
        dialog = self.open()
        dialog.fill(FOLDER, "/before")
        dialog.press(BROWSE[FOLDER])
        window = dialog.window("Select Output Path")
        dialog.focus(window)
        dialog.fill("Path", str(self.folder), window)
        dialog.key("Escape")
        wait_until(lambda: window not in children(dialog.application), "the end of the browse dialog")
        self.assertEqual(dialog.content(FOLDER), "/before")

    def test_takes_a_folder_for_the_output(self):
        dialog = self.open()
        self.browse(dialog, self.folder)
        dialog.focus(dialog.form)
        self.assertEqual(dialog.content(FOLDER), str(self.folder))

    def test_refuses_what_is_no_folder(self):
        dialog = self.open()
        dialog.fill(FOLDER, "/before")
        for path in (self.folder / "notes.txt", self.folder / "missing"):
            self.browse(dialog, path)
            self.assertEqual(dialog.dismiss("Please select a file directory."), ["OK"])
            self.assertEqual(dialog.content(FOLDER), "/before")

    def test_lets_the_folder_be_picked_in_the_tree(self):
        inner = self.folder / "outer" / "inner"
        inner.mkdir(parents=True)
        dialog = self.open()
        dialog.fill(FOLDER, str(inner.parent))
        dialog.press(BROWSE[FOLDER])
        window = dialog.window("Select Output Path")
        dialog.focus(window)
        path = wait_until(lambda: dialog.find("text", "Path", window), 'the box "Path"')
        self.assertEqual(text_of(path), str(inner.parent))
        dialog.key("alt+f")

        def go_in():
            # The folder is read in the background; until then there is nothing to go into.
            dialog.key("Right")
            return text_of(path) == str(inner)
        wait_until(go_in, "the inner folder")
        self.picture(dialog, "tree")
        dialog.key("Return")
        wait_until(lambda: dialog.content(FOLDER) == str(inner), "the folder in its box")


class Refusals(WindowTest):
    def run_dialog(self, *arguments, program=PROGRAM, **environment):
        return subprocess.run([program, "dialog", *map(str, arguments)], capture_output=True, text=True,
                              env=dict(self.environment, **environment), timeout=15, check=False)

    def test_says_so_when_the_dialog_is_not_built(self):
        alone = shutil.copy(PROGRAM, self.folder)
        done = self.run_dialog(program=alone)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertIn("halvane: the dialog is not built: ", done.stderr)

    def test_explains_its_arguments(self):
        done = self.run_dialog("--help", DISPLAY="")
        self.assertEqual(done.returncode, 0)
        self.assertIn("halvane dialog [OPTIONS] [MAP]", done.stdout)
        self.assertEqual(self.run_dialog("--no-such").returncode, 2)

    def test_loads_the_window_toolkit_for_no_other_subcommand(self):
        libraries = subprocess.run(["ldd", PROGRAM], capture_output=True, text=True, check=True).stdout
        self.assertIn("libgdal", libraries)
        self.assertNotIn("Widgets", libraries)

    def test_opens_no_window_for_a_map_that_cannot_be_opened(self):
        done = self.run_dialog(self.folder / "missing.gpkg")
        self.assertEqual(done.returncode, 2)
        self.assertIn("halvane: --map: ", done.stderr)

    def test_says_so_when_there_is_no_display(self):
        done = self.run_dialog(DISPLAY="", QT_QPA_PLATFORM="")
        self.assertEqual((done.returncode, done.stderr),
                         (2, "halvane: there is no display to show the dialog on; set DISPLAY\n"))

    def test_says_so_when_the_display_does_not_answer(self):
        done = self.run_dialog(DISPLAY=":4711")
        self.assertEqual((done.returncode, done.stderr),
                         (2, "halvane: the display does not answer; check DISPLAY\n"))


if __name__ == "__main__":
    started = time.monotonic()
    program = unittest.main(argv=[sys.argv[0], *sys.argv[3:]], exit=False)
    print(f"{time.monotonic() - started:.1f} s")
    sys.exit(0 if program.result.wasSuccessful() and program.result.testsRun else 1)
