// Failures and exit statuses of commands.
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

/// A failure that ends the command, with its reason in words for the user. It is never thrown within a
/// callback of the library or of a plug-in.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& reason, Status status = Status::Failed)
        : std::runtime_error(reason), m_status(status) {}
    Status ExitStatus() const { return m_status; }

private:
    Status m_status;
};

/// The reason when standard output cannot be written.
constexpr const char* kOutputFailure = "the output could not be written";

/// Runs `work` and rethrows its Failure with the exit status Failed. For steps that may follow a change on
/// the phone: NoHandset would mean that nothing was done.
template <class Work>
auto WithoutNoHandsetStatus(Work work) {
    try {
        return work();
    } catch (const Failure& failure) {
        throw Failure(failure.what());
    }
}

} // namespace tools
