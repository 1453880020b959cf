// AT data mode: the handset takes lines of text instead of frames.
#pragma once

#include <optional>

#include "handset/bytes.h"

namespace handset {

/// Splits received bytes into lines. A frame flag discards the line so far: clients send a flag to end a
/// half-sent frame, and a modem ignores it too.
class LineCollector {
public:
    /// Consumes bytes up to the next carriage return and returns the line, carriage return included; empty
    /// when the bytes end before that. `used` is the number of bytes consumed.
    std::optional<Bytes> Take(const uint8_t* data, size_t size, size_t& used);
    void Reset() { m_line.clear(); }

private:
    Bytes m_line;
};

/// The modem's response to a line. `toDiagnostics`: whether the line switches to diagnostic mode.
Bytes AnswerToLine(const Bytes& line, bool& toDiagnostics);

} // namespace handset
