// The simulated handset in a process of its own, so that processor time, memory and threads of the measuring
// process are only the client's.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The content of every measured file: all byte values, including those that frames escape.
std::vector<uint8_t> FilePattern(size_t iSize);

/// HandsetProcess is a handset on COM1 of a device root. It sets QUILLET_DEVICE_ROOT to that folder. Make it
/// before the process starts its first thread. Every operation throws std::runtime_error when the handset's
/// process has ended.
class HandsetProcess {
public:
    HandsetProcess();
    /// Ends the process and removes the device root.
    ~HandsetProcess();
    HandsetProcess(const HandsetProcess&) = delete;
    HandsetProcess& operator=(const HandsetProcess&) = delete;

    /// The folder of the device root. Measurements may put local files there too.
    const std::string& Folder() const { return m_sFolder; }
    /// The path of the tty of COM iPort.
    std::string Tty(int iPort = 1) const;

    /// Delays every response by this time; initially 0.
    void SetLatency(unsigned iLatency_us) { Ask(Order::Latency, iLatency_us); }
    /// Sends this many log records before every response; initially 0.
    void SetChatter(unsigned iRecords) { Ask(Order::Chatter, iRecords); }
    /// Makes the file "file<iSize>" with the content FilePattern(iSize).
    void MakeFile(size_t iSize) { Ask(Order::File, iSize); }
    /// Likewise the file "folder-of-<iSize>/file", the only one in its folder.
    void MakeFolderOfFile(size_t iSize) { Ask(Order::FolderOfFile, iSize); }
    /// Makes the folder "folder<iEntries>" with that many files.
    void MakeFolder(size_t iEntries) { Ask(Order::Folder, iEntries); }
    /// True when the content of the file "up" is FilePattern(iSize).
    bool UploadIsRight(size_t iSize) { return Ask(Order::CheckUpload, iSize) != 0; }
    /// Starts to count requests. RequestCount returns their number.
    void CountRequests() { Ask(Order::CountRequests, 0); }
    uint64_t RequestCount() { return Ask(Order::RequestCount, 0); }
    /// Makes iPorts ports from COM2 on, each with a handset. Only number iAnswering (from 1) answers.
    void AddNeighbours(size_t iPorts, size_t iAnswering);
    /// The number of requests that the neighbour with this number has received.
    uint64_t RequestsOfNeighbour(size_t iNumber) { return Ask(Order::RequestsOfNeighbour, iNumber); }

private:
    enum class Order : uint64_t {
        Latency,
        Chatter,
        File,
        FolderOfFile,
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
