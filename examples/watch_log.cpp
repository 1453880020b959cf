// Shows log records of one code and the debug messages of one subsystem as they arrive.
//
//     $ watch_log 1 0x1098 5 2
//     log record 0x1098 with 3 bytes
//     message of subsystem 5 at phone.c:1: battery low
//     handset> log 0x1098 01 02 03
//     handset> message 5 battery low
//
//     $ watch_log 1 0x0001 5 2
//     the phone has no log code 0x0001
//     [exit status 1]
#include <quillet.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr unsigned char kLogRecord = 0x10;
constexpr unsigned char kMessage = 0x79;
constexpr unsigned kEveryKind = 0xFFFFFFFF;

/// Receives every packet on the library's thread, and keeps log records and messages for the main thread.
class Feed : public CQLibEvents_Listener {
public:
    explicit Feed(Diag_FTM& phone) : m_phone(phone) { m_phone.AddEventListener(this, nullptr); }
    ~Feed() override { m_phone.RemoveEventListener(this); }

    void messageReceived(LONG length, unsigned char* data, unsigned int, LONG, short, DWORD) override {
        constexpr LONG kFcs = 2;
        if (length > kFcs && (data[0] == kLogRecord || data[0] == kMessage))
            m_queue.Push({data, static_cast<size_t>(length - kFcs)});
    }
    bool Take(QueueItem& packet) { return m_queue.WaitPop(&packet, 1000); }

private:
    Diag_FTM& m_phone;
    CQLibMessageQueue m_queue{4096};
};

void Show(Diag_FTM& phone, QueueItem& packet) {
    constexpr unsigned kHeader = 16;
    ExtendedMessage message;
    if (phone.DIAG_ParseExtendedMessage(packet.data, &message))
        std::printf("message of subsystem %u at %s:%u: %s\n", message.iSubsystemID, message.sFileName,
                    message.iLineNumber, message.sFormat);
    else if (packet.length >= kHeader)
        std::printf("log record 0x%04X with %u bytes\n", packet.data[6] | packet.data[7] << 8,
                    packet.length - kHeader);
}

int Watch(Diag_FTM& phone, Feed& feed, int packets) {
    QueueItem packet = {};
    while (packets > 0) {
        if (feed.Take(packet)) {
            Show(phone, packet);
            --packets;
        } else if (!phone.IsPhoneConnected()) {
            std::fprintf(stderr, "the phone stopped answering\n");
            return 1;
        }
    }
    return 0;
}

} // namespace

int main(int count, char** words) {
    const int port = count == 5 ? std::atoi(words[1]) : 0;
    if (port <= 0) {
        std::fprintf(stderr, "usage: watch_log PORT LOG_CODE SUBSYSTEM COUNT\n");
        return 2;
    }
    const auto code = static_cast<unsigned short>(std::strtoul(words[2], nullptr, 0));
    const auto equipment = static_cast<unsigned char>(code >> 12);
    const auto subsystem = static_cast<unsigned short>(std::atoi(words[3]));
    Diag_FTM phone(port);
    phone.ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, 1000); // a busy phone needs more than the usual 80 ms
    if (!phone.IsPhoneConnected()) {
        std::fprintf(stderr, "%s\n", PortErrorText(phone.GetPortError(), "the port").c_str());
        return 1;
    }
    DWORD last = 0;
    if (!phone.DIAG_GetLogRanges(equipment, last) || (code & 0xFFF) > last) {
        std::fprintf(stderr, "the phone has no log code 0x%04X\n", code);
        return 1;
    }
    Feed feed(phone);
    int status = 1;
    if (phone.DIAG_AddExtendedLogCode(equipment, code) && phone.DIAG_SetMessageFilter(subsystem, kEveryKind))
        status = Watch(phone, feed, std::atoi(words[4]));
    else
        std::fprintf(stderr, "the phone does not answer the requests for its traffic\n");
    phone.DIAG_SetMessageFilter(subsystem, 0);
    phone.DIAG_ClearAllLogCodes(equipment);
    return status;
}
