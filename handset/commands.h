// The commands of the simulated handset: a request packet in, a response packet out.
#pragma once

#include "handset/bytes.h"

namespace handset {

class FileSystem;
struct State;

/// The first byte of a response that refuses a request. The request follows it.
enum class ProtocolError : uint8_t { BadCommand = 0x13, BadParameter = 0x14, BadLength = 0x15 };

/// The response that refuses a request.
Bytes ProtocolErrorAnswer(uint8_t code, const Bytes& request);

/// Carries out a request and returns its response. It is a protocol error when the handset does not know the
/// command (BadCommand) or the request is too short (BadLength). The request must not be empty.
Bytes AnswerTo(const Bytes& request, FileSystem& files, State& phone);

/// As AnswerTo, for commands that need neither the file system nor the line.
Bytes StateAnswer(const Bytes& request, State& phone);

/// EFS2 requests begin with these two bytes and a 16-bit command number.
constexpr uint8_t kSubsystemCommand = 0x4B;
constexpr uint8_t kFileSubsystem = 0x13;

/// As AnswerTo, for EFS2 requests.
Bytes FileSystemAnswer(const Bytes& request, FileSystem& files);

/// The response of an EFS2 command that fails with an error number; all its other fields are 0. The extended
/// information query has no error number: the number goes into its result type. A protocol error (BadCommand)
/// for other requests.
Bytes FileSystemRefusal(const Bytes& request, uint32_t errnum);

} // namespace handset
