// Which phone an archive is from.
#pragma once

#include <string>

#include "qdiag/phone.h"

namespace tools::qdiag {

/// What a phone reports about itself; empty where it does not.
struct Identity {
    std::string serial;
    std::string model;
    std::string software;

    /// Returns the identity for people: "SIM-100, serial number 0x80345678, software QSIM-1.2.3".
    std::string Text() const;
    /// Returns the identity as it is kept in archives.
    std::string Stored() const;
    /// Returns false when serial number or model show that the phones differ.
    bool MayEqual(const Identity& other) const;
};

Identity IdentityOf(const Phone& phone);

/// Parses what Stored returned. What is missing stays empty.
Identity ParseIdentity(const std::string& stored);

} // namespace tools::qdiag
