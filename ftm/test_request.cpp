#include "ftm/test_request.h"

#include "ftm/ftm_command.h"

RequestBuilder& BeginTest(CommandFrame& frame, const TestForm& form, unsigned short iId) {
    return frame.FormatExtendedFTMHeader(static_cast<unsigned short>(form.eMode), iId, 0, 0);
}

bool ExchangeTest(CommandFrame& frame, const TestForm& form, unsigned char& iStatus) {
    iStatus = 1;
    return frame.Send(0) && frame.Response().U8At(form.iStatusOffset, iStatus);
}
