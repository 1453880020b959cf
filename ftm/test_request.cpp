#include "ftm/test_request.h"

#include "ftm/ftm_command.h"

RequestBuilder& BeginTest(CommandFrame& frame, const TestForm& form, unsigned short iId) {
    return frame.FormatExtendedFTMHeader(static_cast<unsigned short>(form.eMode), iId, 0, 0);
}

bool ExchangeTest(CommandFrame& frame, const TestForm& form, unsigned char& iStatus) {
    iStatus = 1;
    if (!frame.Send(0))
        return false;
    ResponseReader response = frame.Response();
    response.SetPosition(form.iStatusOffset + 1);
    response.Take(iStatus);
    return true;
}
