// The two ways to exchange EFS2 requests: in a fixed local frame, and in the connection's buffer pair.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "diag/command.h"
#include "diag/command_codes.h"
#include "efs2/commands.h"

/// How often a request to open, close, list or write is sent until the phone grants it.
constexpr int kEfs2Attempts = 5;

/// The size of a fixed frame with a path. A longer request is not sent.
constexpr size_t kEfs2PathRequest = 256;

/// Efs2Exchange is one request in a fixed local frame, with its response. Each attempt waits 2000 ms,
/// whatever the connection's time-outs. Caller's thread. Efs2Frame owns the arrays.
class Efs2Exchange {
public:
    Efs2Exchange(CommandFrame& frame, EFS2_Cmd_Enum eCommand, std::span<unsigned char> request,
                 std::span<unsigned char> response)
        : m_frame(frame),
          m_eCommand(eCommand),
          m_request(request),
          m_response(response),
          m_builder(request, m_iRequestLength) {
        m_builder.U8(DIAG_SUBSYSTEM).U8(DIAG_SUBSYSTEM_EFS2).U16(eCommand).EndHeader();
    }
    Efs2Exchange(const Efs2Exchange&) = delete;
    Efs2Exchange& operator=(const Efs2Exchange&) = delete;

    /// Appends to the request, after the header.
    RequestBuilder& Request() { return m_builder; }

    /// Exchange sends the request and waits for its response. False when none arrived, or when a field did
    /// not fit in the frame; then nothing is sent. The frame keeps the reason of a failure.
    bool Exchange() {
        return ExchangeUntil(1, [](const ResponseReader&) { return true; });
    }

    /// ExchangeUntil sends the request, at most iAttempts times, until `accept(Response())` is true. False
    /// when it never was; the frame then keeps the reason why the last attempt failed.
    template <class Accept>
    bool ExchangeUntil(int iAttempts, Accept accept) {
        for (int i = 0; i < iAttempts && m_builder.Complete(); ++i)
            if (SendOnce() && accept(Response()))
                return true;
        m_frame.NoteFailure(FailureOfLastAttempt());
        return false;
    }

    /// ExchangeUntilGranted sends the request until a response has error number 0 at iErrnumOffset.
    bool ExchangeUntilGranted(int iAttempts, size_t iErrnumOffset);

    /// ExchangeForVerdict does the same for callers that need the phone's error number: true when a response
    /// carried one; iErrorNo is then that of the last such response. With 0, Response() is that response.
    bool ExchangeForVerdict(int iAttempts, size_t iErrnumOffset, DWORD& iErrorNo);

    /// The last response; empty before the first.
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

/// The bytes of an Efs2Frame. They are in a base class so that they exist before the exchange that uses them.
template <size_t iResponseCapacity, size_t iRequestCapacity>
struct Efs2FrameBytes {
    std::array<unsigned char, iRequestCapacity> m_aRequest;
    std::array<unsigned char, iResponseCapacity> m_aResponse;
};

/// Efs2Frame is an exchange with its bytes: responses are cut to iResponseCapacity bytes, requests have at
/// most iRequestCapacity.
template <size_t iResponseCapacity, size_t iRequestCapacity = kEfs2PathRequest>
class Efs2Frame : Efs2FrameBytes<iResponseCapacity, iRequestCapacity>, public Efs2Exchange {
public:
    Efs2Frame(CommandFrame& frame, EFS2_Cmd_Enum eCommand)
        : Efs2Exchange(frame, eCommand, this->m_aRequest, this->m_aResponse) {}
};

/// BeginEfs2Request begins an EFS2 request in the connection's buffer pair.
RequestBuilder& BeginEfs2Request(CommandFrame& frame, EFS2_Cmd_Enum eCommand);

/// SendWholeRequest exchanges the request in the buffer pair, with the connection's ordinary time-out. False,
/// with nothing sent, when a field was left out of the request. It is an operation of its own: the frame
/// forgets the failure before it, and keeps the reason when it fails or the phone refuses it.
bool SendWholeRequest(CommandFrame& frame);
/// AskWholeRequest is the same for a request whose result is only in the response's values (see
/// CommandFrame::SendForValues).
bool AskWholeRequest(CommandFrame& frame);
