#include "ftm/egprs_test_requests.h"

RequestBuilder& EgprsTestRequests::Begin(const char* sEntry, unsigned short iId) {
    m_frame.Log().LogMessage(LOG_FN, "%s", sEntry);
    return BeginTest(m_frame, FTM_MODE_ID_GSM_BER, iId);
}

bool EgprsTestRequests::FTM_EGPRS_BER_START_GPRS_IDLE_MODE_REQ(unsigned char& iStatus) {
    Begin("QLIB_FTM_EGPRS_BER_START_GPRS_IDLE_MODE_REQ()", 256);
    return Exchange(iStatus);
}

bool EgprsTestRequests::FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK(unsigned char& iStatus) {
    Begin("QLIB_FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK()", 257);
    return Exchange(iStatus);
}

bool EgprsTestRequests::FTM_EGPRS_BER_CONFIGURE_DL_TBF(unsigned char iDL_TSC, unsigned char iDL_TFI,
                                                       unsigned short iChannel, unsigned char iBand,
                                                       unsigned char bFirstSlotActive,
                                                       unsigned char iFirstSlotNum,
                                                       unsigned char bSecondSlotActive,
                                                       unsigned char iSecondSlotNum, unsigned char& iStatus) {
    Begin("QLIB_FTM_EGPRS_BER_CONFIGURE_DL_TBF()", 258)
        .U8(iDL_TSC)
        .U8(iDL_TFI)
        .U16(iChannel)
        .U8(iBand)
        .U8(bFirstSlotActive)
        .U8(iFirstSlotNum)
        .U8(bSecondSlotActive)
        .U8(iSecondSlotNum);
    return Exchange(iStatus);
}

bool EgprsTestRequests::FTM_EGPRS_BER_CONFIGURE_UL_TBF(unsigned char iUL_TSC, unsigned char iUSF,
                                                       unsigned char iThird, unsigned char bFirstSlotActive,
                                                       unsigned char iFirstSlotNum,
                                                       unsigned char bSecondSlotActive,
                                                       unsigned char iSecondSlotNum, unsigned char& iStatus) {
    Begin("QLIB_FTM_EGPRS_BER_CONFIGURE_UL_TBF()", 259)
        .U8(iUL_TSC)
        .U8(iUSF)
        .U8(iThird)
        .U8(bFirstSlotActive)
        .U8(iFirstSlotNum)
        .U8(bSecondSlotActive)
        .U8(iSecondSlotNum);
    return Exchange(iStatus);
}

bool EgprsTestRequests::FTM_EGPRS_BER_RELEASE_ALL_TBF(unsigned char& iStatus) {
    Begin("QLIB_FTM_EGPRS_BER_RELEASE_ALL_TBF()", 260);
    return Exchange(iStatus);
}

bool EgprsTestRequests::FTM_EGPRS_BER_RELEASE_UL_TBF(unsigned char& iStatus) {
    Begin("QLIB_FTM_EGPRS_BER_RELEASE_UL_TBF()", 261);
    return Exchange(iStatus);
}
