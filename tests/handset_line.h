// A port server's line to a simulated handset.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include "handset/framing.h"

/// HandsetLine exchanges packets with a handset on its tty. It uses the handset's framing and no code of the
/// product. A thread of its own reads.
class HandsetLine {
public:
    /// Receives every packet that is not an expected response, with its two FCS bytes, on the reading thread.
    using OnPacket = std::function<void(handset::Bytes packet)>;

    HandsetLine(const std::string& sTty, OnPacket onPacket)
        : m_onPacket(std::move(onPacket)),
          m_fd(open(sTty.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)),
          m_stop(eventfd(0, EFD_CLOEXEC)) {
        if (m_fd < 0 || m_stop < 0)
            throw std::runtime_error("no line to " + sTty);
        m_reader = std::thread([this] { Read(); });
    }
    ~HandsetLine() {
        eventfd_write(m_stop, 1);
        m_reader.join();
        close(m_fd);
        close(m_stop);
    }
    HandsetLine(const HandsetLine&) = delete;
    HandsetLine& operator=(const HandsetLine&) = delete;

    /// Returns false when no response came in time. One exchange at a time.
    bool Exchange(const handset::Bytes& request, std::chrono::milliseconds limit, handset::Bytes& response) {
        const handset::Bytes frame = handset::Frame(request);
        std::unique_lock lock(m_lock);
        m_awaited = request.at(0);
        if (write(m_fd, frame.data(), frame.size()) != static_cast<ssize_t>(frame.size()))
            return false;
        m_answered.wait_for(lock, limit, [&] { return !m_awaited; });
        response = m_answer;
        return !std::exchange(m_awaited, std::nullopt);
    }

private:
    void Read() {
        handset::Deframer deframer;
        uint8_t bytes[4096];
        pollfd waiting[] = {{m_fd, POLLIN, 0}, {m_stop, POLLIN, 0}};
        while (poll(waiting, 2, -1) > 0 && waiting[1].revents == 0) {
            const ssize_t iRead = read(m_fd, bytes, sizeof bytes);
            if (iRead <= 0)
                return;
            const auto iEnd = static_cast<size_t>(iRead);
            for (size_t iTaken = 0, iUsed = 0; iTaken < iEnd; iTaken += iUsed)
                if (const auto packet = deframer.Take(bytes + iTaken, iEnd - iTaken, iUsed))
                    Deliver(*packet);
        }
    }
    void Deliver(handset::Bytes packet) {
        {
            const std::lock_guard lock(m_lock);
            if (m_awaited == packet[0]) {
                m_awaited.reset();
                m_answer = std::move(packet);
                m_answered.notify_all();
                return;
            }
        }
        const uint16_t iFcs = handset::Checksum(packet.data(), packet.size());
        packet.push_back(static_cast<uint8_t>(iFcs));
        packet.push_back(static_cast<uint8_t>(iFcs >> 8));
        m_onPacket(std::move(packet));
    }

    const OnPacket m_onPacket;
    const int m_fd;
    const int m_stop;
    std::mutex m_lock;
    std::condition_variable m_answered;
    std::optional<uint8_t> m_awaited; // the first byte of the response; under m_lock
    handset::Bytes m_answer;          // under m_lock
    std::thread m_reader;
};
