// The errors of the port-server path, and how they pass between the library and the program.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

/// ServerException is thrown by operations of the port-server path; its text has operation and reason.
class ServerException : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A PortServer throws ComException when the automation itself failed (the program is gone, say).
class ComException : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// ServerFault carries an exception from one module to another. On 32-bit Windows the unwinder of each module
/// knows that module's frames only. The module that throws therefore catches the exception (Of), returns it
/// as a ServerFault, and the other module throws it again (Raise). Each module compiles both functions into
/// itself.
///
/// They are defined in com_thread_manager.h, because they use the exceptions of that class.
class ServerFault {
public:
    /// No error.
    ServerFault() = default;
    /// Of runs the body and returns what it threw.
    template <class Body>
    static ServerFault Of(Body body) noexcept;
    /// Raise throws it again: exceptions of the port-server path with their own type, any other as
    /// std::runtime_error with the same text.
    void Raise() const;

    /// True when there is an error.
    explicit operator bool() const { return m_eKind != Kind::None; }
    /// The text of the error.
    const std::string& Text() const { return m_sText; }

private:
    enum class Kind { None, Server, Com, Manager, TimeOut, System, Other };

    ServerFault(Kind eKind, std::string sText, int iError = 0)
        : m_eKind(eKind), m_iError(iError), m_sText(std::move(sText)) {}

    Kind m_eKind = Kind::None;
    int m_iError = 0; // the system's error number
    std::string m_sText;
};
