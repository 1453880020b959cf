// One call of the host, or one idle tick, that uses the connection; callbacks to the host.
#pragma once

#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "platform/host_interface.h"
#include "plugin/front.h"

/// Operation owns the connection and the front's state while it exists. Every entry point that uses either
/// makes one first, usually through UsePhone. It is interrupted only by the host's callbacks, which it calls
/// itself.
///
/// An operation collects its log lines. The host receives them when the front's state is consistent: at
/// FlushLog, or after the operation has ended.
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
    /// The library's context for the phone; null: not connected.
    void* Context() const { return m_front.state.ContextHandle; }

    /// False when a tick found the connection in use. It must then change nothing.
    bool Owns() const { return m_bOwns; }

    /// True when the connection may be closed or opened. False while another operation is suspended in a
    /// callback of the host, because it will continue to use its connection.
    bool MayChangeConnection() const;

    /// Adds a log line with a message type of the host.
    void Log(int iMessageType, std::string sText) { m_lines.push_back({iMessageType, std::move(sText)}); }

    /// Describes the operation for the log line of its failure: what is done ("delete"), and to which phone
    /// path.
    void Describe(const char* sWhat) { m_sTask = sWhat; }
    void Describe(const char* sWhat, const std::string& sPhonePath);
    /// The same for an operation with two paths: "/OLD to /NEW".
    void Describe(const char* sWhat, const std::string& sOldPath, const std::string& sNewPath);

    /// Adds the log line that says why the call failed or what the phone refused. Only the first failure of a
    /// call is logged.
    void LogFailure(const std::string& sReason);

    /// Logs a failure and returns the result.
    template <class Result>
    Result Fail(Result result, const std::string& sReason) {
        LogFailure(sReason);
        return result;
    }

    /// Sends the collected log lines to the host. Other operations may run meanwhile.
    void FlushLog();

    /// Reports the progress of the transfer to the host. Other operations may run meanwhile. Returns true
    /// when the user wants to abort.
    bool ReportProgress(int iPercent);

    /// Shows a message and returns when the user has closed it. Other operations may run meanwhile. hOwner:
    /// the host's window, or null.
    void ShowMessage(HWND hOwner, const std::string& sTitle, const std::string& sText);

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
    bool m_bFailureLogged = false;
};

/// Runs `work` as one operation, which is its argument. Returns its result, or `onFailure` when memory runs
/// out.
template <class Result, class Work>
Result UsePhone(Result onFailure, Work work) {
    try {
        Operation operation;
        return work(operation);
    } catch (const std::exception&) {
        return onFailure;
    }
}

/// Fails a call whose path is invalid.
template <class Result>
Result RefusePath(const char* sWhat, Result result) {
    return UsePhone(result, [&](Operation& operation) {
        operation.Describe(sWhat);
        return operation.Fail(result, "a path is missing or longer than 1023 bytes");
    });
}
