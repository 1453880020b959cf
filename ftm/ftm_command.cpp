#include "ftm/ftm_command.h"

RequestBuilder& BeginFtm(CommandFrame& frame, unsigned short iCommandId) {
    return frame.FormatFTMHeader().U16(iCommandId).EndHeader();
}
