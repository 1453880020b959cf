#include "ftm/egprs_test_requests.h"

#include "ftm/test_request.h"

bool EgprsTestRequests::FTM_EGPRS_BER_START_GPRS_IDLE_MODE_REQ(unsigned char& iStatus) {
    return SendTest(m_frame, kGsmTest, 256, iStatus, "QLIB_FTM_EGPRS_BER_START_GPRS_IDLE_MODE_REQ()");
}

bool EgprsTestRequests::FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK(unsigned char& iStatus) {
    return SendTest(m_frame, kGsmTest, 257, iStatus, "QLIB_FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK()");
}

bool EgprsTestRequests::FTM_EGPRS_BER_CONFIGURE_DL_TBF(unsigned char iDL_TSC, unsigned char iDL_TFI,
                                                       unsigned short iChannel, unsigned char iBand,
                                                       unsigned char bFirstSlotActive,
                                                       unsigned char iFirstSlotNum,
                                                       unsigned char bSecondSlotActive,
                                                       unsigned char iSecondSlotNum, unsigned char& iStatus) {
    return SendUnshown(m_frame, kGsmTest, 258, iStatus, "QLIB_FTM_EGPRS_BER_CONFIGURE_DL_TBF()", iDL_TSC,
                       iDL_TFI, iChannel, iBand, bFirstSlotActive, iFirstSlotNum, bSecondSlotActive,
                       iSecondSlotNum);
}

bool EgprsTestRequests::FTM_EGPRS_BER_CONFIGURE_UL_TBF(unsigned char iUL_TSC, unsigned char iUSF,
                                                       unsigned char iThird, unsigned char bFirstSlotActive,
                                                       unsigned char iFirstSlotNum,
                                                       unsigned char bSecondSlotActive,
                                                       unsigned char iSecondSlotNum, unsigned char& iStatus) {
    return SendUnshown(m_frame, kGsmTest, 259, iStatus, "QLIB_FTM_EGPRS_BER_CONFIGURE_UL_TBF()", iUL_TSC,
                       iUSF, iThird, bFirstSlotActive, iFirstSlotNum, bSecondSlotActive, iSecondSlotNum);
}

bool EgprsTestRequests::FTM_EGPRS_BER_RELEASE_ALL_TBF(unsigned char& iStatus) {
    return SendTest(m_frame, kGsmTest, 260, iStatus, "QLIB_FTM_EGPRS_BER_RELEASE_ALL_TBF()");
}

bool EgprsTestRequests::FTM_EGPRS_BER_RELEASE_UL_TBF(unsigned char& iStatus) {
    return SendTest(m_frame, kGsmTest, 261, iStatus, "QLIB_FTM_EGPRS_BER_RELEASE_UL_TBF()");
}
