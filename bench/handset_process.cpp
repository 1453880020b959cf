#include "bench/handset_process.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "handset/device_root.h"
#include "handset/file_system.h"
#include "handset/handset.h"

namespace {

constexpr uint32_t kFreeBlocks = 1u << 20; // of 512 bytes

struct Message {
    uint64_t iOrder = 0;
    uint64_t iValue = 0;
};

bool Receive(int fd, Message& message) {
    return read(fd, &message, sizeof message) == sizeof message;
}

bool Post(int fd, const Message& message) {
    return send(fd, &message, sizeof message, MSG_NOSIGNAL) == sizeof message;
}

} // namespace

std::vector<uint8_t> FilePattern(size_t iSize) {
    std::vector<uint8_t> bytes(iSize);
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<uint8_t>(i * 7 + i / 251);
    return bytes;
}

// --- In the handset's process ---------------------------------------------------------------------------

class HandsetProcess::Child {
public:
    explicit Child(const std::string& sFolder) : m_root(sFolder) {
        m_root.Plug(m_phone);
        m_phone.SetRecordLimit(1);
        m_phone.WithFiles([](handset::FileSystem& files) { files.SetFreeBlocks(kFreeBlocks); });
    }

    void Serve(int fd) {
        Message message; // the first reply only confirms that the handset runs
        do
            message.iValue = CarryOut(static_cast<Order>(message.iOrder), message.iValue);
        while (Post(fd, message) && Receive(fd, message));
    }

private:
    uint64_t CarryOut(Order eOrder, uint64_t iValue) {
        switch (eOrder) {
            case Order::Latency:
                m_phone.SetLatency(std::chrono::microseconds(iValue));
                return 0;
            case Order::Chatter:
                m_phone.SetChatter(static_cast<int>(iValue));
                return 0;
            case Order::CountRequests:
                m_iRequests = 0;
                m_phone.OnRequest([this](const handset::Bytes&) { ++m_iRequests; });
                return 0;
            case Order::RequestCount:
                m_phone.OnRequest(nullptr);
                return m_iRequests;
            case Order::Neighbour:
                AddNeighbour(iValue != 0);
                return 0;
            case Order::RequestsOfNeighbour:
                return m_neighbours.at(iValue - 1)->Requests().size();
            default:
                m_phone.WithFiles(
                    [&](handset::FileSystem& files) { iValue = WithFiles(files, eOrder, iValue); });
                return iValue;
        }
    }

    static uint64_t WithFiles(handset::FileSystem& files, Order eOrder, uint64_t iValue) {
        const std::string sNumber = std::to_string(iValue);
        if (eOrder == Order::CheckUpload)
            return files.Content("up") == FilePattern(iValue) ? 1 : 0;
        if (eOrder == Order::File)
            files.AddFile("file" + sNumber, FilePattern(iValue));
        if (eOrder == Order::FolderOfFile)
            files.AddFile("folder-of-" + sNumber + "/file", FilePattern(iValue));
        for (uint64_t i = 0; eOrder == Order::Folder && i < iValue; ++i)
            files.AddFile("folder" + sNumber + "/entry number " + std::to_string(i), std::string("x"));
        return 0;
    }

    void AddNeighbour(bool bAnswers) {
        m_neighbours.push_back(std::make_unique<handset::Handset>());
        handset::Handset& phone = *m_neighbours.back();
        if (!bAnswers)
            phone.Misbehave({handset::Misbehaviour::Action::Ignore, {}, 0, -1});
        m_root.AddPlainTty("ttyUSB" + std::to_string(m_neighbours.size()), phone.TtyPath());
    }

    handset::DeviceRoot m_root;
    std::atomic<uint64_t> m_iRequests = 0;
    handset::Handset m_phone;
    std::vector<std::unique_ptr<handset::Handset>> m_neighbours;
};

// --- In the measuring process ---------------------------------------------------------------------------

HandsetProcess::HandsetProcess() {
    std::string sTemplate = std::filesystem::temp_directory_path() / "quillet-bench-XXXXXX";
    int aSockets[2];
    if (mkdtemp(sTemplate.data()) == nullptr || socketpair(AF_UNIX, SOCK_SEQPACKET, 0, aSockets) != 0 ||
        (m_iProcess = fork()) < 0)
        throw std::runtime_error("cannot start a process for the handset");
    m_sFolder = sTemplate;
    m_fd = aSockets[m_iProcess == 0 ? 1 : 0];
    close(aSockets[m_iProcess == 0 ? 0 : 1]);
    Message ready;
    if (m_iProcess == 0) {
        try {
            Child(m_sFolder).Serve(m_fd);
        } catch (const std::exception&) {
            _exit(1);
        }
        _exit(0);
    }
    if (!Receive(m_fd, ready))
        throw std::runtime_error("the handset did not start");
    setenv("QUILLET_DEVICE_ROOT", m_sFolder.c_str(), 1);
}

HandsetProcess::~HandsetProcess() {
    close(m_fd);
    waitpid(m_iProcess, nullptr, 0);
    std::error_code ignored;
    std::filesystem::remove_all(m_sFolder, ignored);
}

std::string HandsetProcess::Tty(int iPort) const {
    return std::filesystem::canonical(m_sFolder + "/dev/ttyUSB" + std::to_string(iPort - 1));
}

void HandsetProcess::AddNeighbours(size_t iPorts, size_t iAnswering) {
    for (size_t i = 1; i <= iPorts; ++i)
        Ask(Order::Neighbour, i == iAnswering ? 1 : 0);
}

uint64_t HandsetProcess::Ask(Order eOrder, uint64_t iValue) {
    Message message{static_cast<uint64_t>(eOrder), iValue};
    if (!Post(m_fd, message) || !Receive(m_fd, message))
        throw std::runtime_error("the handset's process has ended");
    return message.iValue;
}
