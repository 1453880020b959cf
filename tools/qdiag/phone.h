// The phone that a command works on.
#pragma once

#include <memory>
#include <string>

#include "common/command_line.h"
#include "quillet.h"

namespace tools::qdiag {

/// Phone is an open connection to a phone that answered. The destructor closes it. One thread.
class Phone {
public:
    /// Opens the port of --port, or the first port on which a phone answers (every port of the machine is
    /// tried), and sets the time-out of --timeout. Throws Failure (NoHandset) when no phone answers.
    explicit Phone(const Job& job);

    Diag_FTM* operator->() const { return m_phone; }
    unsigned Port() const { return m_port; }

    /// Returns true when the phone answers now.
    bool Answers() const { return m_phone->IsPhoneConnected(); }
    /// Returns the failure to throw when the request for `what` was not answered.
    Failure NoResponse(const std::string& what) const;

private:
    struct Closing {
        void operator()(void* context) const;
    };

    std::unique_ptr<void, Closing> m_context;
    Diag_FTM* m_phone = nullptr; // owned by the context
    unsigned short m_port = 0;
};

/// Returns the COM numbers of the machine's serial ports in the system's order. Throws Failure when the list
/// cannot be read.
std::vector<unsigned short> AllPorts();

} // namespace tools::qdiag
