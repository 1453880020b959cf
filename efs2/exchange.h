// The two ways in which EFS2 requests are exchanged: a fixed local frame, and the connection's buffer pair.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "diag/command.h"
#include "efs2/commands.h"

/// How often a request is sent that opens, closes, lists or writes, until the phone grants it.
constexpr int kEfs2Attempts = 5;

/// What a fixed frame with a path holds. A longer request is not sent.
constexpr size_t kEfs2PathRequest = 256;

/// Efs2Exchange is one request in a fixed local frame, with the answer that it brought. The time-out is
/// 2000 ms per attempt, whatever the connection's time-outs are. Caller's thread, for one exchange after
/// the other; the arrays behind it are Efs2Frame's.
class Efs2Exchange {
public:
    Efs2Exchange(CommandFrame& frame, EFS2_Cmd_Enum eCommand, std::span<unsigned char> request,
                 std::span<unsigned char> response)
        : m_frame(frame),
          m_eCommand(eCommand),
          m_request(request),
          m_response(response),
          m_builder(request, m_iRequestLength) {
        m_builder.U8(kSubsystemDispatch).U8(kEfs2Subsystem).U16(eCommand).EndHeader();
    }
    Efs2Exchange(const Efs2Exchange&) = delete;
    Efs2Exchange& operator=(const Efs2Exchange&) = delete;

    /// Appends to the request, behind the header.
    RequestBuilder& Request() { return m_builder; }

    /// Exchange sends the request and waits for its answer. False when none came, or when a field did not
    /// fit in the frame: then nothing is sent. A failure is noted in the frame.
    bool Exchange() {
        return ExchangeUntil(1, [](const ResponseReader&) { return true; });
    }

    /// ExchangeUntil resends the request until `accept(Response())` is true for an answer, iAttempts times
    /// at most. False when it never was: then the frame has a note of why the last attempt failed.
    template <class Accept>
    bool ExchangeUntil(int iAttempts, Accept accept) {
        for (int i = 0; i < iAttempts && m_builder.Complete(); ++i)
            if (SendOnce() && accept(Response()))
                return true;
        m_frame.NoteFailure(FailureOfLastAttempt());
        return false;
    }

    /// ExchangeUntilGranted resends the request until an answer carries the error number 0 at iErrnumOffset.
    bool ExchangeUntilGranted(int iAttempts, size_t iErrnumOffset);

    /// The last answer; empty before the first.
    ResponseReader Response() {
        return {m_response.first(m_iResponseLength), m_iReadPosition, m_builder.HeaderLength()};
    }

private:
    bool SendOnce();
    OperationFailure FailureOfLastAttempt();

    CommandFrame& m_frame;
    const EFS2_Cmd_Enum m_eCommand;
    std::span<unsigned char> m_request;
    std::span<unsigned char> m_response;
    unsigned short m_iRequestLength = 0;
    unsigned short m_iResponseLength = 0;
    unsigned short m_iReadPosition = 0;
    bool m_bAnswered = false; // the last attempt was
    RequestBuilder m_builder;
};

/// The bytes of an Efs2Frame, in a base of their own so that they exist before the exchange that uses them.
template <size_t iResponseCapacity, size_t iRequestCapacity>
struct Efs2FrameBytes {
    std::array<unsigned char, iRequestCapacity> m_aRequest;
    std::array<unsigned char, iResponseCapacity> m_aResponse;
};

/// Efs2Frame is an exchange with its bytes: the answer is cut to iResponseCapacity bytes, the request is
/// iRequestCapacity bytes at most.
template <size_t iResponseCapacity, size_t iRequestCapacity = kEfs2PathRequest>
class Efs2Frame : Efs2FrameBytes<iResponseCapacity, iRequestCapacity>, public Efs2Exchange {
public:
    Efs2Frame(CommandFrame& frame, EFS2_Cmd_Enum eCommand)
        : Efs2Exchange(frame, eCommand, this->m_aRequest, this->m_aResponse) {}
};

/// BeginEfs2Request begins an EFS2 request in the connection's buffer pair.
RequestBuilder& BeginEfs2Request(CommandFrame& frame, EFS2_Cmd_Enum eCommand);

/// SendWholeRequest exchanges what the buffer pair holds, with the connection's ordinary time-out. A request
/// of which a field was left out is not sent: false. It is an operation of its own: the frame forgets the
/// failure before, and has a note when this one fails, and when the phone refuses it.
bool SendWholeRequest(CommandFrame& frame);
/// AskWholeRequest is the same for a request whose only news is in the values of the answer (see
/// CommandFrame::AskForValues).
bool AskWholeRequest(CommandFrame& frame);
