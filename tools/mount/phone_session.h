// The connection to the phone: opened when it is needed, closed when it is idle.
#pragma once

#include <cerrno>
#include <chrono>
#include <memory>
#include <string>

#include "common/failure.h"
#include "mount/posix_error.h"
#include "quillet.h"

namespace tools::mount {

/// PhoneSession belongs to one thread at a time.
class PhoneSession {
public:
    /// A session on a port, or on the first port on which a phone answers (kAnyPort). Opens nothing yet.
    explicit PhoneSession(unsigned short port) : PhoneSession(port, port) {}
    /// A session on `port`. If `wanted` is kAnyPort and that port no longer exists, the phone is searched on
    /// the others, because it may come back under another number.
    PhoneSession(unsigned short wanted, unsigned short port) : m_wantedPort(wanted), m_port(port) {}

    /// Opens the port and checks that a phone answers. Throws Failure (no handset).
    void RequireHandset();
    /// The COM number, valid after RequireHandset.
    unsigned short Port() const { return m_port; }

    /// Closes the port. The next request opens it again.
    void GiveBack() { m_context.reset(); }

    /// Counts how often the phone was lost. Descriptors of an earlier epoch must not be used, because the
    /// phone may have reassigned them after a restart.
    unsigned Epoch() const { return m_epoch; }

    /// Makes one call, bool (Diag_FTM&, DWORD& error). Throws PosixError: the phone's error number, or EIO
    /// when it did not answer. The epoch ends when the phone is gone or has come back on a new line.
    template <class Call>
    void Order(Call call) {
        Judge([&] { return Try(call); }, false);
    }
    /// Does the same for a call that may be repeated and uses no descriptor. If the line was dead, the call
    /// is repeated when the phone is back.
    template <class Call>
    void Query(Call call) {
        Judge([&] { return Try(call); }, true);
    }

private:
    struct Closing {
        void operator()(void* context) const { QLIB_DisconnectPort(context); }
    };

    template <class Call>
    bool Try(Call call) {
        DWORD error = 0;
        if (!call(*m_phone, error))
            return false;
        if (error != 0)
            throw PosixError{HostErrno(error)};
        return true;
    }
    template <class Attempt>
    void Judge(Attempt attempt, bool mayRepeat) {
        Connect();
        const auto begin = std::chrono::steady_clock::now();
        if (attempt())
            return;
        const bool wasDeadLine = std::chrono::steady_clock::now() - begin < std::chrono::seconds(1);
        LookForHandset();
        if (!mayRepeat || !wasDeadLine || !attempt())
            throw PosixError{EIO};
    }

    /// Ensures that the port is open and, after a loss, that the phone answers. Throws PosixError (EIO).
    void Connect();
    /// Checks the phone after a failed call. Returns when it answers, otherwise throws PosixError (EIO).
    void LookForHandset();
    bool Open(unsigned short port);

    const unsigned short m_wantedPort;
    unsigned short m_port;
    unsigned m_epoch = 0;
    bool m_isLost = false;
    std::unique_ptr<void, Closing> m_context;
    Diag_FTM* m_phone = nullptr; // owned by the context
};

} // namespace tools::mount
