"""What a person does with the phone in Double Commander, and the expected results. Each stage uses its own folders
(content.py), so that it can be repeated in a new world."""
import content
import trees
from commander import PHONE
from content import LONG, NEW, OLD, TREE, below
from waiting import check, until

MESSAGE = r"^Double Commander"


def open_the_phone(stage):
    stage.commander.open(PHONE)
    stage.commander.wait_for_names(*content.names_at_the_root())
    check("CONNECTED on port COM1" in stage.commander.log_text(), "the log does not report that the phone is connected")
    check(stage.phone.has_been_asked("opendir", "\0"), "the phone got no request to list its root folder")


def enter_folders(stage):
    stage.phone.forget_requests()
    stage.commander.open(PHONE + "/brew/mod/sample")
    stage.commander.wait_for_names("sample.cfg", "sample.bin")
    check(stage.phone.has_been_asked("opendir", "brew/mod/sample\0"), "the phone got no request to list the folder")
    stage.commander.command("ChangeDirToParent")
    stage.commander.wait_for_place(PHONE + "/brew/mod")
    stage.commander.wait_for_names("sample")


def copy_a_tree_from_the_phone(stage):
    stage.start_copying(PHONE, stage.path("in/tree"), "source")
    stage.wait_for_local("in/tree", below("source", TREE))


def copy_a_tree_to_the_phone(stage):
    stage.start_copying(stage.path("out/new"), PHONE + "/uploads", "tree")
    stage.wait_for_phone("/uploads", below("tree", TREE))


def copy_a_tree_onto_folders_that_exist(stage):
    stage.start_copying(stage.path("out/existing"), PHONE + "/existing", "tree")
    stage.wait_for_phone("/existing/tree", {**TREE, "deep/of the phone.txt": OLD, "of the phone.txt": OLD})


def overwrite_on_the_phone(stage):
    stage.start_copying(stage.path("out/conflict"), PHONE + "/conflict up", "a.txt", "b.txt")
    stage.answer(MESSAGE, "Tab", "Return")  # skips
    stage.commander.wait_for_window(MESSAGE)
    stage.photograph("question")
    check(stage.phone.tree("/conflict up") == {"a.txt": OLD, "b.txt": OLD}, "a file was overwritten without a question")
    stage.answer(MESSAGE, "Return")  # overwrites
    stage.wait_for_phone("/conflict up", {"a.txt": OLD, "b.txt": NEW})


def overwrite_on_the_computer(stage):
    stage.start_copying(PHONE + "/conflict down", stage.path("in/conflict"), "a.txt")
    stage.commander.wait_for_window(MESSAGE)
    check(stage.local("in/conflict") == {"a.txt": OLD}, "the file was overwritten without a question")
    stage.answer(MESSAGE, "Return")  # overwrites
    stage.wait_for_local("in/conflict", {"a.txt": NEW})


def delete_files_and_a_tree(stage):
    stage.commander.open(PHONE + "/waste")
    stage.commander.mark("a.txt", "tree")
    stage.commander.command("Delete")
    stage.answer(MESSAGE, "Return")
    stage.wait_for_phone("/waste", {"keep.txt": OLD})
    stage.commander.wait_for_names("keep.txt")


def make_and_remove_a_folder(stage):
    stage.commander.open(PHONE + "/folders")
    stage.commander.command("MakeDir")
    stage.answer(r"^Create new directory$", "Return", text="new folder")
    stage.wait_for_phone("/folders", {"new folder": None})
    stage.commander.enter("new folder", PHONE + "/folders/new folder")
    stage.commander.wait_for_names()
    stage.commander.command("ChangeDirToParent")
    stage.commander.wait_for_place(PHONE + "/folders")
    stage.commander.mark("new folder")
    stage.commander.command("Delete")
    stage.answer(MESSAGE, "Return")
    stage.wait_for_phone("/folders", {})
    stage.commander.wait_for_names()


def rename_a_file_and_a_folder(stage):
    stage.commander.open(PHONE + "/names")
    for old, new in (("before.txt", "after.txt"), ("folder before", "folder after")):
        names = stage.commander.names()
        stage.commander.point_at(old)
        stage.commander.press("F2", "ctrl+a")
        stage.desktop.type(new)
        stage.commander.press("Return")
        stage.commander.wait_for_names(*[new if name == old else name for name in names])
    stage.wait_for_phone("/names", {"after.txt": OLD, "folder after/inside.txt": NEW})


def move_a_folder_inside_the_phone(stage):
    stage.phone.forget_requests()
    stage.start_copying(PHONE + "/move/from", PHONE + "/move/to", "tree", command="Rename")
    stage.wait_for_phone("/move", {"from": None, **below("to/tree", TREE)})
    check(not stage.phone.has_been_asked("write"), "the files were copied instead of moved")


def enter_links_to_folders(stage):
    for link in ("absolute", "relative"):
        stage.commander.open(PHONE + "/links")
        stage.commander.enter(link, PHONE + "/links/target")
        stage.commander.wait_for_names("found.txt")


def type_commands(stage):
    stage.commander.open(PHONE + "/links")
    stage.commander.type_command("ln target made")
    until("the link is on the phone", lambda: stage.phone.tree("/links").get("made.lnk") == "/links/target")
    stage.commander.type_command("cd target")
    stage.commander.wait_for_place(PHONE + "/links/target")
    stage.commander.wait_for_names("found.txt")


def show_properties(stage):
    stage.commander.open(PHONE)
    stage.commander.point_at("readme.txt")
    stage.phone.forget_requests()
    stage.commander.command("FileProperties")
    stage.commander.wait_for_window(r"^Properties$")
    check(stage.phone.has_been_asked("stat", "readme.txt\0"), "the phone got no request about the file")
    stage.photograph("message")
    stage.answer(r"^Properties$", "Return")


def abort_half_way(stage):
    """Aborts a copy that runs on a slow line."""
    stage.commander.wait_for_window(r"^[1-9]\d*% Copying")
    stage.photograph("half-way")
    stage.answer(r"% Copying", "Escape")
    stage.phone.tell("latency 0")
    stage.commander.wait_until_alone()


def abort_a_copy_to_the_phone(stage):
    stage.phone.forget_requests()
    stage.start_copying(stage.path("out/slow"), PHONE + "/slow up", "long.bin", latency=20000)
    abort_half_way(stage)
    check(stage.phone.has_been_asked("write"), "the copy had not begun")
    check(stage.phone.tree("/slow up") == {}, "a partial file remains on the phone")
    stage.start_copying(stage.path("out/slow"), PHONE + "/slow up", "long.bin")
    stage.wait_for_phone("/slow up", {"long.bin": LONG})


def abort_a_copy_from_the_phone(stage):
    stage.start_copying(PHONE + "/slow down", stage.path("in/slow"), "long.bin", latency=20000)
    abort_half_way(stage)
    check(stage.local("in/slow") == {}, "a partial file remains on the computer")
    check(stage.phone.tree("/slow down") == {"long.bin": LONG}, "the file on the phone was damaged")


def pull_the_phone_out_and_plug_it_in(stage):
    stage.commander.open(PHONE + "/cable")
    stage.commander.wait_for_names("here.txt")
    stage.phone.tell("unplug")
    stage.commander.command("Refresh")
    stage.commander.wait_for_names()
    until("the log reports that the phone is gone", lambda: "NOT CONNECTED" in stage.commander.log_text())
    stage.photograph("out")
    stage.phone.tell("replug")
    stage.commander.command("Refresh")
    stage.commander.wait_for_names("here.txt")


def pull_the_phone_out_while_copying(stage):
    stage.start_copying(stage.path("out/slow"), PHONE + "/cable", "long.bin", latency=20000)
    stage.commander.wait_for_window(r"^[1-9]\d*% Copying")
    stage.phone.tell("unplug")
    stage.commander.wait_for_window(MESSAGE)
    stage.photograph("message")
    stage.phone.tell("latency 0")
    stage.phone.tell("replug")
    stage.answer(MESSAGE, "Escape")
    stage.commander.open(PHONE)
    stage.commander.wait_for_names(*stage.phone.names_at_the_root())


def wait_for_line(stage, line):
    """Waits until the log, which the program also shows in its window, has the plug-in's line."""
    until(lambda: f"the log has the line {line!r}:\n" + stage.commander.log_text(),
          lambda: line in stage.commander.log_text())


def delete_what_the_phone_keeps(stage):
    stage.commander.open(PHONE + "/refused")
    stage.commander.mark("kept.txt")
    stage.phone.tell("misbehave refuse prefix=4B130800 value=13 times=-1")
    stage.commander.command("Delete")
    stage.answer(MESSAGE, "Return")
    wait_for_line(stage, "delete: /refused/kept.txt: the phone refused it: permission denied (13)")
    stage.phone.tell("behave")
    stage.wait_for_phone("/refused", {"kept.txt": OLD})
    stage.commander.command("Refresh")
    stage.commander.wait_for_names("kept.txt")


def copy_more_than_the_phone_has_room_for(stage):
    stage.start_copying(stage.path("out/large"), PHONE + "/full", "too large.bin")
    stage.commander.wait_for_window(MESSAGE)
    wait_for_line(stage, "copy to the phone: /full/too large.bin: no space left on the phone")
    stage.photograph("message")
    stage.answer(MESSAGE, "Escape")
    stage.wait_for_phone("/full", {})
    stage.commander.wait_until_alone()


def leave_the_program(stage):
    stage.commander.open(PHONE)
    status = stage.commander.leave()
    check(status == 0, f"Double Commander ended with status {status}")


STAGES = [open_the_phone, enter_folders, copy_a_tree_from_the_phone, copy_a_tree_to_the_phone,
          copy_a_tree_onto_folders_that_exist, overwrite_on_the_phone, overwrite_on_the_computer,
          delete_files_and_a_tree, make_and_remove_a_folder, rename_a_file_and_a_folder,
          move_a_folder_inside_the_phone, enter_links_to_folders, type_commands, show_properties,
          abort_a_copy_to_the_phone, abort_a_copy_from_the_phone, pull_the_phone_out_and_plug_it_in,
          pull_the_phone_out_while_copying, delete_what_the_phone_keeps, copy_more_than_the_phone_has_room_for,
          leave_the_program]
