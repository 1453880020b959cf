// How the phone differs from an archive.
#pragma once

#include <map>
#include <set>
#include <string>

#include "qdiag/archive/plan.h"

namespace tools::qdiag {

/// What is to be done about an entry that differs.
struct Difference {
    enum class Remedy {
        Write,      // make it, or put it in the place of what is there
        SetMode,    // all but the permissions is right
        Impossible, // nothing: something would have to be removed, or the phone refuses
    };
    Remedy remedy;
    std::string text; // for people
};

/// Differences by path, so that folders precede what is in them.
using Differences = std::map<std::string, Difference>;

/// Compares kind, size, content, target and permissions with the phone's. No link of the phone is followed.
/// `only`: the paths to compare; null for all. `aftermath`: see PhoneFiles. Prints its progress under
/// `title`.
Differences Compare(PhoneFiles& files, const Plan& plan, const std::set<std::string>* only,
                    const std::string& aftermath, const char* title);

} // namespace tools::qdiag
