// The status of the radio tests: written as records arrive, read and waited for by the test sessions.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <span>

#include "link/clock.h"
#include "link/radio_test_blocks.h"
#include "platform/export.h"

class DataLogFileHandler;

/// RadioTestBlocks: the four of them.
struct RadioTestBlocks {
    GSM_BER_State gsm{};
    EGPRS_BER_State egprs{};
    WCDMA_BER_State wcdma{};
    HSDPA_BER_State hsdpa{};
};

/// RadioTestStatus holds the status blocks under one lock. Receive runs on the delivery thread (or, for
/// recordings, on the caller's), everything else on any thread.
class QUILLET_API RadioTestStatus {
public:
    /// Receive takes the packet's values when it is a record of a radio test. It logs them (pLog may be null)
    /// before they can be seen in the blocks, so that in the text log a record stands before what it causes.
    void Receive(std::span<const unsigned char> packet, DataLogFileHandler* pLog);

    /// Copy gives all blocks as they are now.
    RadioTestBlocks Copy() const;
    /// Change calls `work` with the blocks, under the lock.
    void Change(const std::function<void(RadioTestBlocks&)>& work);
    /// WaitUntil waits for the blocks to fulfil a condition, which it tests with every change, under the
    /// lock. False when the deadline came first. It is tested at least once.
    bool WaitUntil(Clock::time_point deadline, const std::function<bool(const RadioTestBlocks&)>& condition);

private:
    mutable std::mutex m_lock;
    std::condition_variable m_changed;
    RadioTestBlocks m_blocks;
};
