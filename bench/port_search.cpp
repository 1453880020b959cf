// The search for a port on which a handset answers. A silent port costs the time-outs of the phone check.
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>

#include "bench/measure.h"
#include "qlib/resource_manager.h"

namespace {

constexpr size_t kPorts = 20;
constexpr size_t kAnswering = 6; // of them, counted from 1
constexpr int kPhoneCheck_ms = 80;
constexpr int kTextAttempts = 2;
constexpr int kTextResponse_ms = 200;
constexpr const char* kFlag = "~";         // ends a frame that the handset may have begun
constexpr unsigned short kFirstNumber = 2; // COM1 is the handset of all other measurements

/// Counts how often ttys are opened. inotify merges equal events in a row, so it watches closings too.
class OpenCounter {
public:
    OpenCounter() : m_fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}
    ~OpenCounter() { close(m_fd); }
    OpenCounter(const OpenCounter&) = delete;
    OpenCounter& operator=(const OpenCounter&) = delete;

    void Watch(const std::string& sTty) { inotify_add_watch(m_fd, sTty.c_str(), IN_OPEN | IN_CLOSE); }
    size_t Count() const {
        // Events without a name all have the same size.
        inotify_event aEvents[1024];
        size_t iOpened = 0;
        for (ssize_t iRead; (iRead = read(m_fd, aEvents, sizeof aEvents)) > 0;)
            iOpened += static_cast<size_t>(
                std::count_if(aEvents, aEvents + static_cast<size_t>(iRead) / sizeof aEvents[0],
                              [](const inotify_event& event) { return (event.mask & IN_OPEN) != 0; }));
        return iOpened;
    }

private:
    int m_fd;
};

/// Waits as the phone check does, on one bare port after another.
void BareSearch(const HandsetProcess& phone) {
    const std::vector<uint8_t> loopback = {0x7B, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (size_t i = 0; i < kPorts; ++i) {
        BareLine line(phone.Tty(static_cast<int>(kFirstNumber + i)));
        line.Write(loopback);
        if (line.DropInput(kPhoneCheck_ms)) {
            line.Exchange({0});
            return;
        }
        line.WriteText(kFlag);
        for (int iAttempt = 0; iAttempt < kTextAttempts; ++iAttempt) {
            line.WriteText("AT$QCDMG\r");
            line.DropInput(kTextResponse_ms);
        }
        line.WriteText(kFlag);
    }
    Require(false, "no port answered");
}

uint64_t RequestsSoFar(HandsetProcess& phone) {
    uint64_t iRequests = 0;
    for (size_t i = 1; i <= kPorts; ++i)
        iRequests += phone.RequestsOfNeighbour(i);
    return iRequests;
}

unsigned short ClientSearch() {
    unsigned short iCount = 1;
    unsigned short iPort = 0;
    unsigned short iIgnored = 1;
    Require(QLib_ResourceManager::GetAvailablePhonesPortList(&iCount, &iPort, 1, &iIgnored) && iCount == 1,
            "no port answered");
    return iPort;
}

} // namespace

void MeasurePortSearch(Bench& bench) {
    bench.report.BeginTopic("search, answer on port 6 of 20");
    bench.Set(kAtOnce);
    bench.phone.AddNeighbours(kPorts, kAnswering);
    const Usage bare = Measure([&] { BareSearch(bench.phone); });
    OpenCounter opens;
    for (size_t i = 0; i < kPorts; ++i)
        opens.Watch(bench.phone.Tty(static_cast<int>(kFirstNumber + i)));
    const uint64_t iBefore = RequestsSoFar(bench.phone);
    unsigned short iPort = 0;
    const Usage client = Measure([&] { iPort = ClientSearch(); });
    Require(iPort == kFirstNumber + kAnswering - 1, "another port answered");
    const uint64_t iRequests = RequestsSoFar(bench.phone) - iBefore;
    const auto fPorts = static_cast<double>(kAnswering);
    bench.report.AddTime({"whole search", "", "ms", bare.fWall_us / 1000, client.fWall_us / 1000,
                          (client.fWall_us - bare.fWall_us) / fPorts});
    bench.report.AddTime({"processor time", "", "ms", bare.fCpu_us / 1000, client.fCpu_us / 1000,
                          (client.fCpu_us - bare.fCpu_us) / fPorts});
    bench.report.Add({"ports opened", "", "", fPorts, static_cast<double>(opens.Count())});
    bench.report.Add({"requests", "", "", static_cast<double>(iBefore), static_cast<double>(iRequests)});
}
