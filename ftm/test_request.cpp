#include "ftm/test_request.h"

RequestBuilder& BeginTest(CommandFrame& frame, FTM_Mode_Id_Enum eMode, unsigned short iId) {
    return frame.FormatExtendedFTMHeader(static_cast<unsigned short>(eMode), iId, 0, 0);
}

bool ExchangeTest(CommandFrame& frame, StatusAt eStatusAt, unsigned char& iStatus) {
    iStatus = 1;
    if (!frame.Send(0))
        return false;
    ResponseReader response = frame.Response();
    response.SetPosition(static_cast<size_t>(eStatusAt) + 1);
    response.Take(iStatus);
    return true;
}
