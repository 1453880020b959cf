#include "plugin/operation.h"

#include <utility>

#include "platform/module_pin.h"
#include "platform/user_message.h"
#include "plugin/front_state.h"
#include "plugin/ownership.h"

namespace {

Ownership& TheOwnership() {
    static Ownership ownership;
    return ownership;
}

// The host's callbacks as they are now: what is called once others may change the front's state.
class Host {
public:
    Host()
        : m_iPluginNumber(front.PluginNumber),
          m_pfnProgress(front.ProgressProc),
          m_pfnLog(front.LogProc),
          m_pfnRequest(front.RequestProc) {}

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

// While it lives, the owner's operation is suspended.
class Suspension {
public:
    Suspension() { TheOwnership().Suspend(); }
    ~Suspension() { TheOwnership().Resume(); }
    Suspension(const Suspension&) = delete;
    Suspension& operator=(const Suspension&) = delete;
};

bool TakeTurn(Operation::Kind eKind) {
    if (eKind == Operation::Kind::Tick)
        return TheOwnership().TryTake();
    TheOwnership().Take();
    return true;
}

} // namespace

Operation::Operation(Kind eKind) : m_eKind(eKind), m_bOwns(TakeTurn(eKind)) {}

Operation::~Operation() {
    if (!m_bOwns)
        return;
    const Host host;
    TheOwnership().GiveBack();
    if (m_eKind == Kind::Call)
        ReleaseUnneededPins();
    for (Line& line : m_lines)
        host.Log(line.iMessageType, line.sText);
}

bool Operation::MayChangeConnection() const {
    return !TheOwnership().IsAnySuspended();
}

void Operation::TellHost() {
    std::vector<Line> lines = std::exchange(m_lines, {});
    if (lines.empty())
        return;
    const Host host;
    const Suspension suspension;
    for (Line& line : lines)
        host.Log(line.iMessageType, line.sText);
}

bool ReportProgress(int iPercent) {
    const Host host;
    const Suspension suspension;
    return host.Progress(iPercent);
}

void TellUser(HWND hOwner, const std::string& sTitle, const std::string& sText) {
    const Host host;
    const Suspension suspension;
    host.Message(hOwner, sTitle, sText);
}
