// What goes wrong on the port-server path, and its way between the library and the program.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

/// ServerException is what an operation of the port-server path raises; its text says which one and why.
class ServerException : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// ComException is how a PortServer reports that the automation itself failed (the program is gone, say).
class ComException : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// ServerFault is an exception on its way between two modules. On 32-bit Windows each module has an unwinder
/// that knows the module's own frames only. An exception is therefore caught in the module that threw it
/// (Of), returned as a ServerFault, and thrown again in the other one (Raise). Each module compiles both
/// functions into itself.
///
/// They are defined in com_thread_manager.h, because they name the exceptions of that class.
class ServerFault {
public:
    /// Nothing went wrong.
    ServerFault() = default;
    /// Of runs the body and returns what it threw.
    template <class Body>
    static ServerFault Of(Body body) noexcept;
    /// Raise throws it: what the port-server path throws as what it was, anything else as std::runtime_error
    /// with the same text.
    void Raise() const;

    explicit operator bool() const { return m_eKind != Kind::None; }
    const std::string& Text() const { return m_sText; }

private:
    enum class Kind { None, Server, Com, Manager, TimeOut, System, Other };

    ServerFault(Kind eKind, std::string sText, int iError = 0)
        : m_eKind(eKind), m_iError(iError), m_sText(std::move(sText)) {}

    Kind m_eKind = Kind::None;
    int m_iError = 0; // of the system
    std::string m_sText;
};
