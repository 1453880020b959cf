#include "qdiag/log_switches.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace tools::qdiag {
namespace {

constexpr DWORD kMostItems = 4096; // per equipment id
constexpr DWORD kAllKinds = 0xFFFFFFFF;

std::string CodeName(unsigned code) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", code);
    return text;
}

void AppendNumber(Bytes& bytes, DWORD number) {
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<unsigned char>(number >> shift));
}

} // namespace

LogSwitches::~LogSwitches() {
    SwitchBack();
}

void LogSwitches::KeepMask(unsigned char equipment, DWORD lastItem) {
    Bytes mask;
    AppendNumber(mask, equipment);
    AppendNumber(mask, lastItem);
    mask.resize(mask.size() + lastItem / 8 + 1);
    auto size = static_cast<unsigned short>(mask.size());
    if (!m_phone->ReadExtendedLogMask(LOG_MASK_GET, mask.data(), size) || mask[0] != equipment ||
        mask[1] != 0 || mask[2] != 0 || mask[3] != 0)
        throw m_phone.NoResponse("its log mask");
    m_masks.push_back(std::move(mask));
}

void LogSwitches::AddCodes(unsigned char equipment, const std::vector<unsigned short>& codes) {
    DWORD lastItem = 0;
    if (!m_phone->DIAG_GetLogRanges(equipment, lastItem))
        throw m_phone.NoResponse("its log codes");
    for (const unsigned short code : codes) {
        if (code % kMostItems > lastItem)
            throw Failure("the phone has no log code " + CodeName(code));
    }
    KeepMask(equipment, std::min(lastItem, kMostItems - 1));
    if (!m_phone->DIAG_AddExtendedLogCodes(equipment, codes.data(),
                                           static_cast<unsigned short>(codes.size())))
        throw m_phone.NoResponse("log code " + CodeName(codes.front()));
}

void LogSwitches::AddMessages(unsigned short subsystem) {
    m_subsystems.push_back(subsystem);
    if (!m_phone->DIAG_SetMessageFilter(subsystem, kAllKinds))
        throw m_phone.NoResponse("the messages of subsystem " + std::to_string(subsystem));
}

void LogSwitches::AddEvents() {
    m_hasEvents = true;
    if (!m_phone->DIAG_EventReportControl(true))
        throw m_phone.NoResponse("event reports");
}

void LogSwitches::Undo() {
    if (!SwitchBack())
        throw Failure(
            "the phone's log settings could not be restored; it may continue to send what was enabled");
}

bool LogSwitches::SwitchBack() {
    bool isDone = true;
    for (Bytes& mask : m_masks) {
        auto size = static_cast<unsigned short>(mask.size());
        isDone = m_phone->DIAG_SetExtendedLogMask(LOG_MASK_SET, mask.data(), size) && isDone;
    }
    for (const unsigned short subsystem : m_subsystems)
        isDone = m_phone->DIAG_SetMessageFilter(subsystem, 0) && isDone;
    if (m_hasEvents)
        isDone = m_phone->DIAG_EventReportControl(false) && isDone;
    m_masks.clear();
    m_subsystems.clear();
    m_hasEvents = false;
    return isDone;
}

} // namespace tools::qdiag
