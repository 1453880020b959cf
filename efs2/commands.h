// The commands of the phone's EFS2 subsystem.
#pragma once

/// The third and fourth byte of an EFS2 request: the command of the subsystem. The first two are
/// DIAG_SUBSYSTEM, whatever command type the connection uses for factory tests, and DIAG_SUBSYSTEM_EFS2.
enum EFS2_Cmd_Enum : unsigned short {
    EFS2_CMD_OPEN = 2,
    EFS2_CMD_CLOSE = 3,
    EFS2_CMD_READ = 4,
    EFS2_CMD_WRITE = 5,
    EFS2_CMD_SYMLINK = 6,
    EFS2_CMD_READLINK = 7,
    EFS2_CMD_UNLINK = 8,
    EFS2_CMD_MKDIR = 9,
    EFS2_CMD_RMDIR = 10,
    EFS2_CMD_OPENDIR = 11,
    EFS2_CMD_READDIR = 12,
    EFS2_CMD_CLOSEDIR = 13,
    EFS2_CMD_RENAME = 14,
    EFS2_CMD_STAT = 15,
    EFS2_CMD_CHMOD = 18,
    EFS2_CMD_STATFS = 19,
    EFS2_CMD_ACCESS = 20,
    EFS2_CMD_DEV_INFO = 21,
    EFS2_CMD_EXTENDED_INFO = 29,
};
