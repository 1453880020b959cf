// Enables log records, messages and events in the phone, and restores the phone afterwards.
#pragma once

#include <vector>

#include "qdiag/hex.h"
#include "qdiag/phone.h"

namespace tools::qdiag {

/// LogSwitches restores the phone when it is destroyed. Log masks get their former content. Messages and
/// events are switched off, because phones do not report their former state. Each Add function throws Failure
/// when the phone does not comply.
class LogSwitches {
public:
    explicit LogSwitches(const Phone& phone) : m_phone(phone) {}
    /// Does what Undo does, but ignores a failure.
    ~LogSwitches();
    LogSwitches(const LogSwitches&) = delete;
    LogSwitches& operator=(const LogSwitches&) = delete;

    /// Enables log codes of one equipment id.
    void AddCodes(unsigned char equipment, const std::vector<unsigned short>& codes);
    /// Enables all messages of a subsystem.
    void AddMessages(unsigned short subsystem);
    /// Enables event reports.
    void AddEvents();

    /// Restores the phone now. Throws Failure when the phone does not comply.
    void Undo();

private:
    void KeepMask(unsigned char equipment, DWORD lastItem);
    bool SwitchBack();

    const Phone& m_phone;
    std::vector<Bytes> m_masks; // the former masks: equipment id, last item, mask bits
    std::vector<unsigned short> m_subsystems;
    bool m_hasEvents = false;
};

} // namespace tools::qdiag
