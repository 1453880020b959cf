// Key presses on the phone, detected in the debug messages that its software writes for them.
#pragma once

#include <array>
#include <deque>
#include <string_view>
#include <vector>

#include "diag/key_press_id.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class LogMasks;

/// KeyPresses: configured (by default for common phones) -> capturing -> stopped. During a capture the size
/// and event queries turn the phone's messages into key events, and drop everything else in the phone-log
/// queue. Caller's thread. The frame and the log masks must outlive it.
class QUILLET_API KeyPresses {
public:
    KeyPresses(CommandFrame& frame, LogMasks& masks);

    /// DIAG_KeyPress_ConfigureKeyDetect sets the prefixes of key messages (each cut to 99 characters), and
    /// which messages to request from the phone. After the prefix a message has "0x" and the key's hardware
    /// code. Always true.
    bool DIAG_KeyPress_ConfigureKeyDetect(const char* sKeyReleasePrefix, const char* sKeyPressPrefix,
                                          unsigned short iSSID, DWORD iRT_MASK);

    /// DIAG_KeyPress_StartCapture requests the messages and switches phone logging on;
    /// DIAG_KeyPress_StopCapture undoes both. True when the phone answered.
    bool DIAG_KeyPress_StartCapture();
    bool DIAG_KeyPress_StopCapture();

    /// DIAG_KeyPress_ClearQueue drops all key events and all packets in the phone-log queue. Always true.
    bool DIAG_KeyPress_ClearQueue();

    /// DIAG_KeyPress_ClearMap, DIAG_KeyPress_AddMapEntry edit the map from hardware codes to keys. The first
    /// entry for a code is used. Keys that are not in the map, or map to 0, produce no events. Always true.
    bool DIAG_KeyPress_ClearMap();
    bool DIAG_KeyPress_AddMapEntry(unsigned short iHW_ID, unsigned char iKeyPressSW_ID);

    /// DIAG_KeyPress_GetQueueSize reads the number of queued key events. Always true.
    bool DIAG_KeyPress_GetQueueSize(DWORD& iQueueSize);
    /// DIAG_KeyPress_GetNextKeyEvent takes the oldest event: the key, and 1 for pressed or 2 for released.
    /// Both stay unchanged when there is none. Always true.
    bool DIAG_KeyPress_GetNextKeyEvent(unsigned short& iKeyPressID, unsigned char& iEventType);

private:
    struct KeyMapEntry {
        unsigned short iHW_ID;
        unsigned char iKeyPressSW_ID;
    };
    struct KeyEvent {
        unsigned short iKeyPressID;
        unsigned char iEventType;
    };
    using Prefix = std::array<char, 100>;

    void DIAG_KeyPress_SetDefaultKeyConfig();
    KeyPressID DIAG_KeyPress_GetSW_CodeFromHW_Code(unsigned short iHW_ID) const;
    void DIAG_KeyPress_ProcessResponseBuffer();
    void ProcessMessage(std::string_view sFormat);
    static DWORD ParseHexString(std::string_view sText);

    CommandFrame& m_frame;
    LogMasks& m_masks;
    Prefix m_sReleasePrefix{};
    Prefix m_sPressPrefix{};
    unsigned short m_iSSID = 0;
    DWORD m_iRT_MASK = 0;
    std::vector<KeyMapEntry> m_keyMap;
    std::deque<KeyEvent> m_keyEvents;
};
