// The handset that a command works on.
#pragma once

#include <memory>
#include <string>

#include "common/command_line.h"
#include "quillet.h"

namespace tools::qdiag {

/// Phone is an open connection to a handset that answered. It is closed with the object. One thread.
class Phone {
public:
    /// Phone opens the port of --port, or the first port on which a handset answers (for which it asks all
    /// ports of the machine), and sets the time-out of --timeout. Throws Failure: no handset.
    explicit Phone(const Job& job);

    Diag_FTM* operator->() const { return m_phone; }
    unsigned Port() const { return m_port; }

    /// Answers tells whether the handset answers now.
    bool Answers() const { return m_phone->IsPhoneConnected(); }
    /// NoAnswer is the failure to throw when the request for `what` was not answered.
    Failure NoAnswer(const std::string& what) const;

private:
    struct Closing {
        void operator()(void* context) const;
    };

    std::unique_ptr<void, Closing> m_context;
    Diag_FTM* m_phone = nullptr; // the context's
    unsigned short m_port = 0;
};

/// AllPorts gives the COM numbers of the machine's serial ports, in the system's order. Throws Failure when
/// the list cannot be read.
std::vector<unsigned short> AllPorts();

} // namespace tools::qdiag
