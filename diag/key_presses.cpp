#include "diag/key_presses.h"

#include <algorithm>
#include <cstring>

#include "diag/command.h"
#include "diag/log_masks.h"
#include "diag/received_packet.h"
#include "link/extended_message.h"
#include "link/extended_message_text.h"

namespace {

constexpr unsigned char kPressed = 1;
constexpr unsigned char kReleased = 2;

/// The hardware codes of a common keypad and their keys, in the order of the default map.
constexpr struct {
    unsigned short iHW_ID;
    unsigned char iKeyPressSW_ID;
} kDefaultMap[] = {
    {0xE030, 82},  {0xE035, 83},  {0xE031, 84},  {0xE032, 85},  {0xE033, 132}, {0xE034, 133}, {0xE02F, 80},
    {0xE02E, 81},  {0xE021, 48},  {0xE022, 49},  {0xE023, 50},  {0xE024, 51},  {0xE025, 52},  {0xE026, 53},
    {0xE027, 54},  {0xE028, 55},  {0xE029, 56},  {0xE02A, 57},  {0xE02B, 42},  {0xE02C, 35},  {0x04BA, 9},
    {0xE048, 8},   {0xE047, 6},   {0xE06D, 134}, {0xE037, 135}, {0xE036, 136}, {0xE049, 137}, {0xE06C, 138},
    {0xE06B, 139}, {0xE038, 140}, {0x0000, 0},   {0x0000, 0},
};

void CopyPrefix(std::array<char, 100>& sOut, const char* sPrefix) {
    const std::string_view sSource = sPrefix != nullptr ? sPrefix : "";
    const size_t iLength = std::min(sSource.size(), sOut.size() - 1);
    sOut.fill('\0');
    std::copy_n(sSource.begin(), iLength, sOut.begin());
}

DWORD HexDigit(char cDigit) {
    if (cDigit >= '0' && cDigit <= '9')
        return static_cast<DWORD>(cDigit - '0');
    const char cUpper = cDigit >= 'a' && cDigit <= 'f' ? static_cast<char>(cDigit - 'a' + 'A') : cDigit;
    return cUpper >= 'A' && cUpper <= 'F' ? static_cast<DWORD>(cUpper - 'A' + 10) : 0;
}

} // namespace

KeyPresses::KeyPresses(CommandFrame& frame, LogMasks& masks) : m_frame(frame), m_masks(masks) {
    DIAG_KeyPress_SetDefaultKeyConfig();
}

void KeyPresses::DIAG_KeyPress_SetDefaultKeyConfig() {
    constexpr DWORD kKeyMessages = 8;
    DIAG_KeyPress_ConfigureKeyDetect("AEEKey_RemovePressed: ", "AEEKey_AddPressed: ", 0, kKeyMessages);
    for (const auto& entry : kDefaultMap)
        DIAG_KeyPress_AddMapEntry(entry.iHW_ID, entry.iKeyPressSW_ID);
}

bool KeyPresses::DIAG_KeyPress_ConfigureKeyDetect(const char* sKeyReleasePrefix, const char* sKeyPressPrefix,
                                                  unsigned short iSSID, DWORD iRT_MASK) {
    CopyPrefix(m_sReleasePrefix, sKeyReleasePrefix);
    CopyPrefix(m_sPressPrefix, sKeyPressPrefix);
    m_iSSID = iSSID;
    m_iRT_MASK = iRT_MASK;
    return true;
}

bool KeyPresses::DIAG_KeyPress_StartCapture() {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_KeyPress_StartCapture()");
    const bool bAnswered = m_masks.DIAG_SetMessageFilter(m_iSSID, m_iRT_MASK);
    m_masks.DIAG_SetPhoneLoggingState(true);
    return bAnswered;
}

bool KeyPresses::DIAG_KeyPress_StopCapture() {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_KeyPress_StopCapture()");
    const bool bAnswered = m_masks.DIAG_SetMessageFilter(m_iSSID, 0);
    m_masks.DIAG_SetPhoneLoggingState(false);
    return bAnswered;
}

bool KeyPresses::DIAG_KeyPress_ClearQueue() {
    m_frame.Access().PhoneLogQueue().Clear();
    m_keyEvents.clear();
    return true;
}

bool KeyPresses::DIAG_KeyPress_ClearMap() {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_KeyPress_ClearMap( )");
    m_keyMap.clear();
    return true;
}

bool KeyPresses::DIAG_KeyPress_AddMapEntry(unsigned short iHW_ID, unsigned char iKeyPressSW_ID) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_KeyPress_AddMapEntry( iHW_ID = %d, iKeyPressSW_ID = %d )", iHW_ID,
            iKeyPressSW_ID);
    m_keyMap.push_back({iHW_ID, iKeyPressSW_ID});
    return true;
}

KeyPressID KeyPresses::DIAG_KeyPress_GetSW_CodeFromHW_Code(unsigned short iHW_ID) const {
    const auto found = std::find_if(m_keyMap.begin(), m_keyMap.end(),
                                    [&](const KeyMapEntry& entry) { return entry.iHW_ID == iHW_ID; });
    return KeyPressID{found == m_keyMap.end() ? 0 : found->iKeyPressSW_ID};
}

bool KeyPresses::DIAG_KeyPress_GetQueueSize(DWORD& iQueueSize) {
    DIAG_KeyPress_ProcessResponseBuffer();
    iQueueSize = static_cast<DWORD>(m_keyEvents.size());
    return true;
}

bool KeyPresses::DIAG_KeyPress_GetNextKeyEvent(unsigned short& iKeyPressID, unsigned char& iEventType) {
    DIAG_KeyPress_ProcessResponseBuffer();
    if (m_keyEvents.empty())
        return true;
    iKeyPressID = m_keyEvents.front().iKeyPressID;
    iEventType = m_keyEvents.front().iEventType;
    m_keyEvents.pop_front();
    return true;
}

void KeyPresses::DIAG_KeyPress_ProcessResponseBuffer() {
    QueueItem item;
    ExtendedMessage message;
    while (m_frame.Access().PhoneLogQueue().Pop(&item)) {
        if (item.length < kMaxPacketSize && ParseExtendedMessage(PacketOf(item), message))
            ProcessMessage(message.sFormat);
    }
}

void KeyPresses::ProcessMessage(std::string_view sFormat) {
    const std::string_view sPress = m_sPressPrefix.data();
    const bool bPressed = sFormat.starts_with(sPress);
    const bool bReleased = sFormat.starts_with(m_sReleasePrefix.data());
    // The code is searched for after the press prefix in release messages too. The longer release prefix only
    // adds leading characters, which count as zeros.
    constexpr size_t kHexMark = 2;
    const DWORD iCode = ParseHexString(sFormat.substr(std::min(sFormat.size(), sPress.size() + kHexMark)));
    const int iKey = DIAG_KeyPress_GetSW_CodeFromHW_Code(static_cast<unsigned short>(iCode));
    if (iKey == 0)
        return;
    if (bPressed)
        m_keyEvents.push_back({static_cast<unsigned short>(iKey), kPressed});
    if (bReleased)
        m_keyEvents.push_back({static_cast<unsigned short>(iKey), kReleased});
}

DWORD KeyPresses::ParseHexString(std::string_view sText) {
    constexpr size_t kDigits = 8;
    DWORD iValue = 0;
    for (const char cDigit : sText.substr(0, kDigits))
        iValue = iValue << 4 | HexDigit(cDigit);
    return iValue;
}
