#include "diag/simple_command.h"

bool SimpleCommand(CommandFrame& frame, const char* sEntry, std::initializer_list<unsigned char> request) {
    frame.Log().LogMessage(LOG_FN, "%s", sEntry);
    frame.BeginRequest().Bytes({request.begin(), request.size()});
    return frame.Send(0);
}

bool SimpleQuestion(CommandFrame& frame, const char* sEntry, std::initializer_list<unsigned char> request,
                    size_t iReserved) {
    frame.Log().LogMessage(LOG_FN, "%s", sEntry);
    frame.BeginRequest().Bytes({request.begin(), request.size()}).EndHeader(iReserved);
    return frame.AskForValues();
}
