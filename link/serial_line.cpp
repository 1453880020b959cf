#include "link/serial_line.h"

#include <algorithm>
#include <thread>

#include "link/as_int.h"
#include "link/clock.h"
#include "link/crc16.h"
#include "link/event_listener.h"
#include "link/text_log.h"

namespace {

constexpr unsigned char kDiagModeRates = 4; // 115200 baud

LineMaker& TheLineMaker() {
    static LineMaker maker;
    return maker;
}

} // namespace

Transport::~Transport() = default;

std::unique_ptr<Transport> MakeLine(int iComPort) {
    if (const LineMaker& maker = TheLineMaker())
        return maker(iComPort);
    return std::make_unique<SerialLine>(iComPort);
}

void ReplaceLines(LineMaker maker) {
    TheLineMaker() = std::move(maker);
}

SerialLine::~SerialLine() {
    SerialLine::Stop();
}

void SerialLine::Start(const LineOwner& owner) {
    m_owner.emplace(owner);
    m_pLink = std::make_unique<CQLibCommManager>(m_dispatcher, owner.log);
    m_dispatcher.AddConnectionListener(&owner.listener);
}

void SerialLine::Stop() {
    SerialLine::Close();
    if (m_pLink != nullptr)
        m_pLink->JoinReceiver();
    m_dispatcher.Stop();
}

// --- The port ---------------------------------------------------------------------------------------

bool SerialLine::Open(DWORD) {
    m_bDeliveryFailed = !m_dispatcher.StartDelivery();
    if (m_bDeliveryFailed) {
        Log().LogMessage(LOG_ERR, "Error. No thread for deliveries.");
        return false;
    }
    return m_pLink->Open(m_iComPort);
}

void SerialLine::Close() {
    if (m_pLink != nullptr)
        m_pLink->Close();
}

PortError SerialLine::LastError() const {
    return m_bDeliveryFailed ? PortError::Other : m_pLink->OpenError();
}

bool SerialLine::SwitchToDiagMode() {
    return m_pLink->Data2DM(kDiagModeRates);
}

// --- Requests ---------------------------------------------------------------------------------------

bool SerialLine::WriteFrame(std::span<const unsigned char> packet, DWORD iTimeOut_ms, bool bForceStartFlag,
                            DWORD& iTaken_ms) {
    const DWORD iStart_ms = TickCount_ms();
    const bool bSent =
        m_pLink->Send(packet.data(), static_cast<DWORD>(packet.size()), iTimeOut_ms, bForceStartFlag);
    iTaken_ms = TickCount_ms() - iStart_ms;
    return bSent;
}

void SerialLine::LogWritten(DWORD iTimeOut_ms, DWORD iTaken_ms) {
    Log().LogMessage(LOG_IO, "OK\t Timeout=%d", AsInt(iTimeOut_ms));
    Log().LogMessage(LOG_IO, "WRITE STACK TIME (ms):\t%d", AsInt(iTaken_ms));
}

bool SerialLine::WriteAndWait(const LineRequest& request, const unsigned char* piFirstByte,
                              QueueItem& reply) {
    Turn turn;
    if (MayRead())
        BeginReading(turn);
    if (!turn || request.iReadDelay_ms != 0)
        LeaveReading(turn);
    m_owner->responses.Clear();
    DWORD iTaken_ms = 0;
    if (!WriteFrame(request.bytes, request.iTimeOut_ms, false, iTaken_ms)) {
        Log().LogMessage(LOG_ERR, "Error. Send data failed.");
        return false;
    }
    LogWritten(request.iTimeOut_ms, iTaken_ms);
    const DWORD iStart_ms = TickCount_ms();
    std::this_thread::sleep_for(Milliseconds(request.iReadDelay_ms));
    if (!WaitForReply(request.iTimeOut_ms, piFirstByte, turn, reply)) {
        Log().LogMessage(LOG_ERR, "Error. Read failed.");
        return false;
    }
    Log().LogMessage(LOG_IO, "READ STACK TIME (ms):\t%d", AsInt(TickCount_ms() - iStart_ms));
    return true;
}

bool SerialLine::MayRead() {
    return m_pLink->IsPortOpen() && m_dispatcher.IsDirect();
}

void SerialLine::BeginReading(Turn& turn) {
    turn.emplace(m_pLink->Reader());
    // What arrived before the request is no response to it, so it must be in the queue before that is
    // cleared.
    m_pLink->ReadFor(0);
}

void SerialLine::LeaveReading(Turn& turn) {
    turn.reset();
    m_pLink->Reader().Wake();
}

bool SerialLine::ReadReply(DWORD iLimit_ms, QueueItem& reply, bool& bDevicePresent) {
    if (m_owner->responses.Pop(&reply))
        return true;
    bDevicePresent = m_pLink->ReadFor(iLimit_ms);
    return m_owner->responses.Pop(&reply);
}

bool SerialLine::WaitForReply(DWORD iTimeOut_ms, const unsigned char* piFirstByte, Turn& turn,
                              QueueItem& reply) {
    const auto deadline = Clock::now() + Milliseconds(iTimeOut_ms);
    bool bDevicePresent = true;
    do {
        const auto left = std::chrono::ceil<Milliseconds>(deadline - Clock::now()).count();
        const auto iLimit_ms = static_cast<DWORD>(std::max<decltype(left)>(left, 1));
        if (turn ? ReadReply(iLimit_ms, reply, bDevicePresent)
                 : m_owner->responses.WaitPop(&reply, iLimit_ms)) {
            if (piFirstByte == nullptr || (reply.length > 0 && reply.data[0] == *piFirstByte))
                return true;
            Log().LogHex(LOG_IO, reply.data, reply.length, "REC \t");
        }
        if (turn && !MayRead())
            LeaveReading(turn);
    } while (bDevicePresent && Clock::now() < deadline);
    return false;
}

bool SerialLine::Exchange(const LineRequest& request, LineResponse& response) {
    const int iSize = static_cast<int>(request.bytes.size());
    Log().LogHex(LOG_IO, request.bytes.data(), iSize, "SEND (%d bytes):", iSize);
    const unsigned char iCode = request.SerialCode();
    if (!WriteAndWait(request, &iCode, response.item))
        return false;
    const unsigned short iReceived = response.item.length;
    response.iLength = static_cast<unsigned short>(iReceived - std::min<size_t>(iReceived, kFcsSize));
    return true;
}

bool SerialLine::Write(std::span<const unsigned char> packet, DWORD iTimeOut_ms, bool bForceStartFlag) {
    const int iSize = static_cast<int>(packet.size());
    Log().LogHex(LOG_IO, packet.data(), iSize, "SEND_ASYNC (%d bytes):", iSize);
    DWORD iTaken_ms = 0;
    const bool bSent = WriteFrame(packet, iTimeOut_ms, bForceStartFlag, iTaken_ms);
    LogWritten(iTimeOut_ms, iTaken_ms);
    m_pLink->Reader().Wake();
    return bSent;
}

bool SerialLine::ExchangeText(const LineRequest& request, QueueItem& reply) {
    const int iSize = static_cast<int>(request.bytes.size());
    Log().LogHex(LOG_IO, request.bytes.data(), iSize, "SEND RAW (%d bytes):", iSize);
    m_pLink->SetRawReplyPending(true);
    if (!WriteAndWait(request, nullptr, reply))
        return false;
    m_pLink->SetRawReplyPending(false);
    return true;
}

bool SerialLine::SetStartFlag(bool bStartFlag) {
    return m_pLink->SetStartFlag(bStartFlag);
}

// --- Observers --------------------------------------------------------------------------------------

bool SerialLine::AddListener(CQLibEvents_Listener* pListener, CQLibEvents_Filter* pFilter) {
    m_dispatcher.AddListener(pListener, pFilter);
    return true;
}

void SerialLine::RemoveListener(CQLibEvents_Listener* pListener) {
    m_dispatcher.RemoveListener(pListener);
}
