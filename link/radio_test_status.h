// The status of the radio tests: updated as records arrive, read and awaited by the test sessions.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <span>

#include "link/clock.h"
#include "link/radio_test_blocks.h"
#include "platform/export.h"

class DataLogFileHandler;

/// The blocks of all four tests.
struct RadioTestBlocks {
    GSM_BER_State gsm{};
    EGPRS_BER_State egprs{};
    WCDMA_BER_State wcdma{};
    HSDPA_BER_State hsdpa{};
};

/// RadioTestStatus guards the status blocks with one lock. Receive runs on the delivery thread (for
/// recordings, on the caller's), everything else on any thread.
class QUILLET_API RadioTestStatus {
public:
    /// Receive stores the values of a radio-test record; other packets are ignored. It logs the record (pLog
    /// may be null) before it updates the blocks, so that the record precedes its consequences in the text
    /// log.
    void Receive(std::span<const unsigned char> packet, DataLogFileHandler* pLog);

    /// Copy returns all blocks in their current state.
    RadioTestBlocks Copy() const;
    /// Change calls `work` with the blocks, under the lock.
    void Change(const std::function<void(RadioTestBlocks&)>& work);
    /// WaitUntil waits until the blocks meet a condition, which is tested under the lock, at once and after
    /// every change. False when the deadline passes first.
    bool WaitUntil(Clock::time_point deadline, const std::function<bool(const RadioTestBlocks&)>& condition);

private:
    mutable std::mutex m_lock;
    std::condition_variable m_changed;
    RadioTestBlocks m_blocks;
};
