// The first byte of each general command's request, and the subsystems that requests address.
#pragma once

enum DiagCommandCode : unsigned char {
    DIAG_VERSION = 0x00,
    DIAG_DOWNLOAD_HELLO = 0x01, // in download mode; the response begins with DIAG_DOWNLOAD_HELLO_ANSWER
    DIAG_DOWNLOAD_HELLO_ANSWER = 0x02,
    DIAG_PEEK_8 = 0x02,
    DIAG_PEEK_16 = 0x03,
    DIAG_PEEK_32 = 0x04,
    DIAG_POKE_8 = 0x05,
    DIAG_POKE_16 = 0x06,
    DIAG_POKE_32 = 0x07,
    DIAG_DOWNLOAD_NOP = 0x06, // in download mode
    DIAG_MESSAGE_LEVEL = 0x1F,
    DIAG_HANDSET_KEY = 0x20,
    DIAG_NV_READ = 0x26,
    DIAG_NV_WRITE = 0x27,
    DIAG_CONTROL = 0x29,
    DIAG_ERROR_READ = 0x2A,
    DIAG_ERROR_CLEAR = 0x2B,
    DIAG_DIP_SWITCHES = 0x2F,
    DIAG_DOWNLOAD_MODE = 0x3A,
    DIAG_SERVICE_CODE = 0x41,
    DIAG_SUBSYSTEM = 0x4B,
    DIAG_EVENT_CONTROL = 0x60,
    DIAG_LOG_MASK = 0x73,
    DIAG_BUILD_ID = 0x7C,
    DIAG_MESSAGE_FILTER = 0x7D,
    DIAG_SUBSYSTEM_DELAYED = 0x80,
    DIAG_FREEZE = 0xFF,
};

enum DiagSubsystem : unsigned char {
    DIAG_SUBSYSTEM_CALL_MANAGER = 0x04,
    DIAG_SUBSYSTEM_GSM = 0x08,
    DIAG_SUBSYSTEM_FTM = 0x0B,
    DIAG_SUBSYSTEM_GPS = 0x0D,
    DIAG_SUBSYSTEM_DISPLAY = 0x10,
    DIAG_SUBSYSTEM_EFS2 = 0x13,
    DIAG_SUBSYSTEM_SIM = 0x21,
    DIAG_SUBSYSTEM_MEDIA_FLO = 0x2B,
    DIAG_SUBSYSTEM_NV_BATCH = 0x30,
    DIAG_SUBSYSTEM_NV_BACKUP = 0x37,
};
