#include "link/radio_test_status.h"

#include "link/crc16.h"
#include "link/packet_codes.h"
#include "link/radio_test_records.h"

void RadioTestStatus::Receive(std::span<const unsigned char> packet, DataLogFileHandler* pLog) {
    // Responses arrive here too, the blocks of a download among them: computing their FCS would be wasted.
    if (packet.empty() || packet[0] != kLogRecord)
        return;
    const auto record = FindTestRecord(WithoutFcs(packet));
    if (record.empty())
        return;
    if (pLog != nullptr)
        LogTestRecord(record, *pLog);
    Change([&](RadioTestBlocks& blocks) { StoreTestRecord(record, blocks); });
}

RadioTestBlocks RadioTestStatus::Copy() const {
    const std::lock_guard lock(m_lock);
    return m_blocks;
}

void RadioTestStatus::Change(const std::function<void(RadioTestBlocks&)>& work) {
    {
        const std::lock_guard lock(m_lock);
        work(m_blocks);
    }
    m_changed.notify_all();
}

bool RadioTestStatus::WaitUntil(Clock::time_point deadline,
                                const std::function<bool(const RadioTestBlocks&)>& condition) {
    std::unique_lock lock(m_lock);
    return m_changed.wait_until(lock, deadline, [&] { return condition(m_blocks); });
}
