// The connection to the handset: taken when it is needed, given back when it is not.
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
    /// A session on a port, or on the first on which a handset answers (kAnyPort). Nothing is opened yet.
    explicit PhoneSession(unsigned short port) : PhoneSession(port, port) {}
    /// A session on `port`; with `wanted` kAnyPort a handset is looked for on others once there is no such
    /// port any more: one that is attached again may come back under another number.
    PhoneSession(unsigned short wanted, unsigned short port) : m_wantedPort(wanted), m_port(port) {}

    /// RequireHandset takes the port and asks whether a handset answers. Throws Failure (no handset).
    void RequireHandset();
    /// The COM number; known after RequireHandset.
    unsigned short Port() const { return m_port; }

    /// GiveBack closes the port. The next request takes it again.
    void GiveBack() { m_context.reset(); }

    /// Epoch counts how often the handset was lost. What the phone handed out before (descriptors) is not to
    /// be used in a later epoch: after a restart it may have given the same numbers to others.
    unsigned Epoch() const { return m_epoch; }

    /// Order makes one call, bool (Diag_FTM&, DWORD& error). Throws PosixError: the phone's error number; EIO
    /// when it did not answer. A handset that turns out to be gone, or to have come back on a new line, ends
    /// the epoch.
    template <class Call>
    void Order(Call call) {
        Judge([&] { return Try(call); }, false);
    }
    /// Query is Order for what may be asked twice and uses nothing that the phone handed out: on a line that
    /// was dead it asks again when the handset is back.
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

    /// Connect makes sure that the port is open; after a loss, also that the handset answers. Throws
    /// PosixError (EIO).
    void Connect();
    /// Finds out why a call failed: returns when the handset answers. Throws PosixError (EIO).
    void LookForHandset();
    bool Open(unsigned short port);

    const unsigned short m_wantedPort;
    unsigned short m_port;
    unsigned m_epoch = 0;
    bool m_isLost = false;
    std::unique_ptr<void, Closing> m_context;
    Diag_FTM* m_phone = nullptr; // the context's
};

} // namespace tools::mount
