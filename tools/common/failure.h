// How a command ends.
#pragma once

#include <stdexcept>
#include <string>

namespace tools {

/// The exit statuses of the programs.
enum class Status {
    Success = 0,
    Failed = 1,    // the operation was tried and failed, or is not possible
    Usage = 2,     // the command line is wrong; nothing was tried
    NoHandset = 3, // no handset answered when the command began; nothing was done
};

/// A failure that ends the command, with its reason in words for the user. Never thrown inside a callback of
/// the library or of a plug-in.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& reason, Status status = Status::Failed)
        : std::runtime_error(reason), m_status(status) {}
    Status ExitStatus() const { return m_status; }

private:
    Status m_status;
};

/// The reason of a failure to write to standard output.
constexpr const char* kOutputFailure = "the output could not be written";

/// AfterTheBeginning does work that may come after something was done on the phone: a handset that does not
/// answer there is a failure like any other, and its exit status is Failed.
template <class Work>
auto AfterTheBeginning(Work work) {
    try {
        return work();
    } catch (const Failure& failure) {
        throw Failure(failure.what());
    }
}

} // namespace tools
