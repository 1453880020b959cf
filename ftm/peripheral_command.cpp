#include "ftm/peripheral_command.h"

#include <string>
#include <string_view>

#include "ftm/ftm_command.h"

bool LogStatus(CommandFrame& frame, const char* sEntry, bool bPassed, unsigned short iStatus) {
    const std::string sMethod(sEntry, std::string_view(sEntry).find('('));
    LogLine(frame, LOG_RET, "%s(): %s, status: %d", sMethod.c_str(), bPassed ? "PASS" : "FAIL", iStatus);
    return bPassed;
}

bool TakePiece(CommandFrame& frame, DWORD iOffset, unsigned short& iSize, unsigned char* piData,
               size_t iTail) {
    constexpr size_t kData = kPeripheralHeader + 6;
    ResponseReader response = frame.Response();
    DWORD iAnswered = 0;
    unsigned short iPiece = 0;
    if (!response.U32At(kPeripheralHeader, iAnswered) || iAnswered != iOffset ||
        !response.U16At(kPeripheralHeader + 4, iPiece) || iPiece > iSize ||
        response.Size() < kData + iPiece + iTail)
        return false;
    response.SetPosition(kData + iPiece);
    response.Take({piData, iPiece});
    iSize = iPiece;
    return true;
}
