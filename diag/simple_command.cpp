#include "diag/simple_command.h"

#include "diag/command.h"

bool SimpleCommand(CommandFrame& frame, const char* sEntry, std::initializer_list<unsigned char> request) {
    LogLine(frame, LOG_FN, "%s", sEntry);
    frame.BeginRequest().Bytes({request.begin(), request.size()});
    return frame.Send(0);
}

bool SimpleQuery(CommandFrame& frame, const char* sEntry, std::initializer_list<unsigned char> request,
                 size_t iReserved) {
    LogLine(frame, LOG_FN, "%s", sEntry);
    frame.BeginRequest().Bytes({request.begin(), request.size()}).EndHeader(iReserved);
    return frame.SendForValues();
}
