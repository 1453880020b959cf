// One call of the host (or one idle tick) on the connection, and the front's ways to call the host back.
#pragma once

#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "platform/host_interface.h"
#include "plugin/front.h"

/// Operation is the time during which an entry point owns the connection and the front's state. Every entry
/// point that touches either makes one first, mostly through UsePhone; nothing interrupts it but the host's
/// callbacks, which it alone calls.
///
/// An operation collects its log lines. The host gets them when the front's state is whole: with TellHost,
/// or, those that are left, after the operation has ended.
class Operation {
public:
    enum class Kind {
        Call, // waits for its turn
        Tick, // only tries
    };
    explicit Operation(Kind eKind = Kind::Call);
    ~Operation();
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    /// The front's state, while the operation owns it.
    FrontState& State() { return m_front.state; }
    /// The phone's library context; null: not connected.
    void* Context() const { return m_front.state.ContextHandle; }

    /// False when a tick found the connection in use: then it must leave everything alone.
    bool Owns() const { return m_bOwns; }

    /// MayChangeConnection tells whether the connection may be closed or opened: not while another operation
    /// is suspended in a host callback, since that one goes on with the connection that it knows.
    bool MayChangeConnection() const;

    /// Log adds a line of the given host message type.
    void Log(int iMessageType, std::string sText) { m_lines.push_back({iMessageType, std::move(sText)}); }

    /// Describe says what the operation is about, for the line of its failure: what is done ("delete") to
    /// which phone path.
    void Describe(const char* sWhat) { m_sTask = sWhat; }
    void Describe(const char* sWhat, const std::string& sPhonePath);
    /// The same for an operation that has a second path: "/OLD to /NEW".
    void Describe(const char* sWhat, const std::string& sOldPath, const std::string& sNewPath);

    /// Complain adds the line that says why the host's call failed, or what the phone refused. A call has
    /// one: later complaints are dropped.
    void Complain(const std::string& sReason);

    /// Fail complains and returns the result.
    template <class Result>
    Result Fail(Result result, const std::string& sReason) {
        Complain(sReason);
        return result;
    }

    /// TellHost hands the collected lines to the host, others having their turns meanwhile.
    void TellHost();

    /// ReportProgress tells the host how far the transfer is, others having their turns meanwhile. True when
    /// the user asks to abort.
    bool ReportProgress(int iPercent);

    /// TellUser shows the user a text with a title and returns when it was dismissed, others having their
    /// turns meanwhile. hOwner: the host's window, or null.
    void TellUser(HWND hOwner, const std::string& sTitle, const std::string& sText);

private:
    struct Line {
        int iMessageType;
        std::string sText;
    };

    Front& m_front;
    const Kind m_eKind;
    const bool m_bOwns;
    std::vector<Line> m_lines;
    std::string m_sTask; // "delete: /a"
    bool m_bComplained = false;
};

/// UsePhone runs `work` as one operation, handing it over. Returns its result, or `onFailure` when memory
/// ran out.
template <class Result, class Work>
Result UsePhone(Result onFailure, Work work) {
    try {
        Operation operation;
        return work(operation);
    } catch (const std::exception&) {
        return onFailure;
    }
}

/// RefusePath fails a call whose paths cannot be used.
template <class Result>
Result RefusePath(const char* sWhat, Result result) {
    return UsePhone(result, [&](Operation& operation) {
        operation.Describe(sWhat);
        return operation.Fail(result, "a path is missing or longer than 1023 bytes");
    });
}
