"""The settings of Double Commander: the plug-in, and a key for each command that the session uses."""
import os

# The shortcuts as the program spells them, as xdotool spells them, and their commands. Copying, moving and the like use
# the program's defaults. Other commands use single keys where a lost modifier would matter, because a busy program does
# not always notice that Ctrl is down.
KEYS = {
    "F2": ("F2", "cm_RenameOnly"),
    "F5": ("F5", "cm_Copy"),
    "F6": ("F6", "cm_Rename"),
    "F7": ("F7", "cm_MakeDir"),
    "F8": ("F8", "cm_Delete"),
    "Alt+Enter": ("alt+Return", "cm_FileProperties"),
    "F1": ("F1", "cm_ChangeDir activepath={phone}"),
    "F3": ("F3", "cm_ChangeDir activepath={local}"),
    "F4": ("F4", "cm_ChangeDirToParent"),
    "F9": ("F9", "cm_Refresh"),
    "F11": ("F11", "cm_FocusCmdLine"),
    "F12": ("F12", "cm_Exit"),
    "Ctrl+Shift+A": ("ctrl+shift+a", "cm_MarkMarkAll"),
    "Ctrl+Shift+U": ("ctrl+shift+u", "cm_MarkUnmarkAll"),
    "Ctrl+Shift+C": ("ctrl+shift+c", "cm_CopyFullNamesToClip"),
    "Ctrl+Shift+V": ("ctrl+shift+v", "cm_LoadSelectionFromClip"),
}

SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<doublecmd DCVersion="1.0.10" ConfigVersion="13">
  <Layout><LogWindow>True</LogWindow></Layout>
  <FileOperations><UseTrash>False</UseTrash><Confirmations>15</Confirmations></FileOperations>
  <Log Enabled="True" Count="0" LogFileWithDateInName="False">
    <FileName>{log}</FileName><Options>1023</Options>
  </Log>
  <Plugins>
    <WfxPlugins>
      <WfxPlugin Enabled="True"><Name>{name}</Name><Path>{plugin}</Path></WfxPlugin>
    </WfxPlugins>
  </Plugins>
</doublecmd>
"""


def key_of(command):
    """Returns the key for a command, as xdotool spells it. `command` includes the command's parameter."""
    return next(key for key, words in KEYS.values() if words == "cm_" + command)


def shortcuts(places):
    lines = ['<?xml version="1.0" encoding="UTF-8"?>', '<doublecmd DCVersion="1.0.10">',
             '<Hotkeys Version="53"><Form Name="Main">']
    for shortcut, (_, words) in KEYS.items():
        command, _, parameter = words.format(**places).partition(" ")
        lines.append(f"<Hotkey><Shortcut>{shortcut}</Shortcut><Command>{command}</Command>"
                     + (f"<Param>{parameter}</Param>" if parameter else "") + "</Hotkey>")
    return "\n".join(lines + ["</Form></Hotkeys></doublecmd>", ""])


def write(folder, plugin, name, local, log):
    """Creates a profile in which the plug-in is called `name` and keys open the phone and the folder `local`."""
    os.makedirs(folder)
    with open(os.path.join(folder, "doublecmd.xml"), "w") as file:
        file.write(SETTINGS.format(plugin=plugin, name=name, log=log))
    with open(os.path.join(folder, "shortcuts.scf"), "w") as file:
        file.write(shortcuts({"phone": f"wfx://{name}/", "local": local}))
