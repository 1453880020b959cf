// AT data mode: the handset takes lines of text instead of frames.
#pragma once

#include <optional>

#include "handset/bytes.h"

namespace handset {

/// Cuts received bytes into lines. A frame flag among them empties the line: clients send one to end whatever
/// stands half-sent on the wire, and a modem would not take it for text either.
class LineCollector {
public:
    /// Takes bytes up to the next carriage return and gives the line with it; nothing when the bytes end
    /// before. `used` tells how many were taken.
    std::optional<Bytes> Take(const uint8_t* data, size_t size, size_t& used);
    void Reset() { m_line.clear(); }

private:
    Bytes m_line;
};

/// The modem's answer to a line. `toDiagnostics`: the line switches to diagnostic mode.
Bytes AnswerToLine(const Bytes& line, bool& toDiagnostics);

} // namespace handset
