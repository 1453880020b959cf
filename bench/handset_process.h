// The simulated handset, in a process of its own: processor time, memory and threads of the measuring process
// are then those of the client alone.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The content of every measured file: all byte values, also those that frames escape.
std::vector<uint8_t> FilePattern(size_t iSize);

/// HandsetProcess is a handset on COM1 of a device root, which QUILLET_DEVICE_ROOT names from then on. It
/// must be made before the process starts its first thread. Every operation throws std::runtime_error when
/// the handset's process is gone.
class HandsetProcess {
public:
    HandsetProcess();
    /// Ends the process and removes the device root.
    ~HandsetProcess();
    HandsetProcess(const HandsetProcess&) = delete;
    HandsetProcess& operator=(const HandsetProcess&) = delete;

    /// The folder of the device root, which local files of the measurements may use too.
    const std::string& Folder() const { return m_sFolder; }
    /// The path of the tty of COM iPort.
    std::string Tty(int iPort = 1) const;

    /// Every answer takes this long; 0 at first.
    void SetLatency(unsigned iLatency_us) { Ask(Order::Latency, iLatency_us); }
    /// So many log records come before every answer; 0 at first.
    void SetChatter(unsigned iRecords) { Ask(Order::Chatter, iRecords); }
    /// The file "file<iSize>" holds FilePattern(iSize).
    void MakeFile(size_t iSize) { Ask(Order::File, iSize); }
    /// The folder "folder<iEntries>" has so many files.
    void MakeFolder(size_t iEntries) { Ask(Order::Folder, iEntries); }
    /// Whether the file "up" holds FilePattern(iSize).
    bool UploadIsRight(size_t iSize) { return Ask(Order::CheckUpload, iSize) != 0; }
    /// Counts requests from now on, until RequestCount, which returns their number.
    void CountRequests() { Ask(Order::CountRequests, 0); }
    uint64_t RequestCount() { return Ask(Order::RequestCount, 0); }
    /// Makes COM2 and the ports behind it, iPorts in all, each with a handset, of which only that number
    /// iAnswering (from 1) answers.
    void AddNeighbours(size_t iPorts, size_t iAnswering);
    /// How many requests the neighbour of that number has received.
    uint64_t RequestsOfNeighbour(size_t iNumber) { return Ask(Order::RequestsOfNeighbour, iNumber); }

private:
    enum class Order : uint64_t {
        Latency,
        Chatter,
        File,
        Folder,
        CheckUpload,
        CountRequests,
        RequestCount,
        Neighbour,
        RequestsOfNeighbour,
    };
    class Child;

    uint64_t Ask(Order eOrder, uint64_t iValue);

    std::string m_sFolder;
    int m_fd = -1;
    int m_iProcess = -1;
};
