#include "ftm/ftm_command.h"

#include "diag/command.h"

RequestBuilder& BeginFtm(CommandFrame& frame, unsigned short iCommandId) {
    return frame.FormatFTMHeader().U16(iCommandId).EndHeader();
}
