// What a command switches on in the phone so that it sends records, messages and events, and off again.
#pragma once

#include <vector>

#include "qdiag/hex.h"
#include "qdiag/phone.h"

namespace tools::qdiag {

/// LogSwitches undoes at its end what it did: log masks become what they were; messages and events, whose
/// earlier state phones do not tell, are switched off. Each Add throws Failure when the phone does not
/// follow.
class LogSwitches {
public:
    explicit LogSwitches(const Phone& phone) : m_phone(phone) {}
    /// Undo, without a word when it fails.
    ~LogSwitches();
    LogSwitches(const LogSwitches&) = delete;
    LogSwitches& operator=(const LogSwitches&) = delete;

    /// AddCodes switches log codes of one equipment id on.
    void AddCodes(unsigned char equipment, const std::vector<unsigned short>& codes);
    /// AddMessages switches all messages of a subsystem on.
    void AddMessages(unsigned short subsystem);
    /// AddEvents switches event reports on.
    void AddEvents();

    /// Undo does it now. Throws Failure when the phone does not follow.
    void Undo();

private:
    void KeepMask(unsigned char equipment, DWORD lastItem);
    bool SwitchBack();

    const Phone& m_phone;
    std::vector<Bytes> m_masks; // as they were: equipment id, last item, mask
    std::vector<unsigned short> m_subsystems;
    bool m_hasEvents = false;
};

} // namespace tools::qdiag
