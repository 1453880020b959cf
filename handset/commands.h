// What the simulated handset answers: the commands that it knows, each a request packet in and an answer out.
#pragma once

#include "handset/bytes.h"

namespace handset {

class FileSystem;
struct State;

/// The first byte of an answer that refuses a request; the request follows it.
enum class ProtocolError : uint8_t { BadCommand = 0x13, BadParameter = 0x14, BadLength = 0x15 };

/// The answer that refuses a request.
Bytes ProtocolErrorAnswer(uint8_t code, const Bytes& request);

/// Carries a request out and gives its answer; a protocol error when the handset does not know the command
/// (BadCommand) or the request ends before its fields do (BadLength). The request must not be empty.
Bytes AnswerTo(const Bytes& request, FileSystem& files, State& phone);

/// As AnswerTo, for what is neither file system nor line.
Bytes StateAnswer(const Bytes& request, State& phone);

/// The requests of the file system proper begin with these two bytes and their command's number (16 bit).
constexpr uint8_t kSubsystemCommand = 0x4B;
constexpr uint8_t kFileSubsystem = 0x13;

/// As AnswerTo, for these.
Bytes FileSystemAnswer(const Bytes& request, FileSystem& files);

/// The answer that a file-system command gives when it is refused with an error number: all its fields 0 but
/// that one (the information query has none: its kind of answer is put in place). A protocol error
/// (BadCommand) for other requests.
Bytes FileSystemRefusal(const Bytes& request, uint32_t errnum);

} // namespace handset
