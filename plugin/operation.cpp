#include "plugin/operation.h"

#include <algorithm>
#include <utility>

#include "platform/module_pin.h"
#include "platform/user_message.h"
#include "plugin/ownership.h"

namespace {

/// A copy of the host's callbacks, for calls during which others may change the front's state.
class Host {
public:
    explicit Host(const FrontState& state)
        : m_iPluginNumber(state.PluginNumber),
          m_pfnProgress(state.ProgressProc),
          m_pfnLog(state.LogProc),
          m_pfnRequest(state.RequestProc) {}

    void Log(int iMessageType, std::string& sText) const {
        if (m_pfnLog)
            m_pfnLog(m_iPluginNumber, iMessageType, sText.data());
    }

    bool Progress(int iPercent) const {
        return m_pfnProgress && m_pfnProgress(m_iPluginNumber, nullptr, nullptr, iPercent) != 0;
    }

    void Message(HWND hOwner, const std::string& sTitle, const std::string& sText) const {
        ShowUserMessage({hOwner, m_iPluginNumber, m_pfnRequest}, sTitle, sText);
    }

private:
    int m_iPluginNumber;
    tProgressProc m_pfnProgress;
    tLogProc m_pfnLog;
    tRequestProc m_pfnRequest;
};

/// Suspends the owner's operation while it exists.
class Suspension {
public:
    explicit Suspension(Ownership& turn) : m_turn(turn) { m_turn.Suspend(); }
    ~Suspension() { m_turn.Resume(); }
    Suspension(const Suspension&) = delete;
    Suspension& operator=(const Suspension&) = delete;

private:
    Ownership& m_turn;
};

/// Returns a phone path with a leading '/' and without control characters, for a log line.
std::string Shown(std::string sPhonePath) {
    if (!sPhonePath.starts_with('/'))
        sPhonePath.insert(0, "/");
    std::replace_if(
        sPhonePath.begin(), sPhonePath.end(), [](unsigned char c) { return c < ' '; }, '?');
    return sPhonePath;
}

bool TakeTurn(Ownership& turn, Operation::Kind eKind) {
    if (eKind == Operation::Kind::Tick)
        return turn.TryTake();
    turn.Take();
    return true;
}

} // namespace

Operation::Operation(Kind eKind)
    : m_front(TheFront()), m_eKind(eKind), m_bOwns(TakeTurn(m_front.turn, eKind)) {}

Operation::~Operation() {
    if (!m_bOwns)
        return;
    const Host host(m_front.state);
    m_front.turn.GiveBack();
    if (m_eKind == Kind::Call)
        ReleaseUnneededPins();
    for (Line& line : m_lines)
        host.Log(line.iMessageType, line.sText);
}

bool Operation::MayChangeConnection() const {
    return !m_front.turn.IsAnySuspended();
}

void Operation::Describe(const char* sWhat, const std::string& sPhonePath) {
    m_sTask = std::string(sWhat) + ": " + Shown(sPhonePath);
}

void Operation::Describe(const char* sWhat, const std::string& sOldPath, const std::string& sNewPath) {
    Describe(sWhat, Shown(sOldPath) + " to " + Shown(sNewPath));
}

void Operation::LogFailure(const std::string& sReason) {
    if (!std::exchange(m_bFailureLogged, true))
        Log(MSGTYPE_IMPORTANTERROR, m_sTask + ": " + sReason);
}

void Operation::FlushLog() {
    std::vector<Line> lines = std::exchange(m_lines, {});
    if (lines.empty())
        return;
    const Host host(m_front.state);
    const Suspension suspension(m_front.turn);
    for (Line& line : lines)
        host.Log(line.iMessageType, line.sText);
}

bool Operation::ReportProgress(int iPercent) {
    const Host host(m_front.state);
    const Suspension suspension(m_front.turn);
    return host.Progress(iPercent);
}

void Operation::ShowMessage(HWND hOwner, const std::string& sTitle, const std::string& sText) {
    const Host host(m_front.state);
    const Suspension suspension(m_front.turn);
    host.Message(hOwner, sTitle, sText);
}
