#include "diag/identity.h"

#include "diag/command.h"
#include "diag/command_codes.h"
#include "diag/nv_items.h"
#include "diag/simple_command.h"

bool PhoneIdentity::DIAG_VERNO_F(QLIB_PhoneResp_Version* pVersion) {
    const bool bAnswered = SimpleCommand(m_frame, "QLIB_DIAG_VERNO_F()", {DIAG_VERSION});
    if (!bAnswered || pVersion == nullptr)
        return false;
    return m_frame.Response().BytesAt(0, {reinterpret_cast<unsigned char*>(pVersion), sizeof *pVersion});
}

bool PhoneIdentity::DIAG_EXT_BUILD_ID_F(DWORD& iMSM_HW_Version, DWORD& iMobModel, char* sMobSwRev,
                                        char* sModelStr) {
    constexpr size_t kTextOffset = 12;
    if (!SimpleQuery(m_frame, "QLIB_DIAG_EXT_BUILD_ID_F()", {DIAG_BUILD_ID}, 3))
        return false;
    const ResponseReader response = m_frame.Response();
    response.U32At(4, iMSM_HW_Version);
    response.U32At(8, iMobModel);
    const size_t iLength = response.TextAt(kTextOffset, sMobSwRev, kBuildTextSize);
    response.TextAt(kTextOffset + iLength + 1, sModelStr, kBuildTextSize);
    LogLine(m_frame, LOG_RET,
            "QLIB_DIAG_EXT_BUILD_ID_F( iMSM_HW_Version = %d, iMobModel = %d, "
            "sMobSwRev = %s, sModelStr  = %s)",
            iMSM_HW_Version, iMobModel, sMobSwRev, sModelStr);
    return true;
}

bool PhoneIdentity::DIAG_READ_ESN_F(DWORD& iESN) {
    constexpr unsigned short kEsnItem = 0;
    LogLine(m_frame, LOG_FN, "DIAG_READ_ESN_F() -- Start");
    unsigned char aEsn[4] = {};
    unsigned short iStatus = 0;
    constexpr size_t kShortestGrant = 3 + sizeof aEsn + sizeof(unsigned short); // head, data, status
    const bool bRead = m_nvItems.DIAG_NV_READ_F(kEsnItem, aEsn, sizeof aEsn, iStatus);
    if (!bRead || (iStatus == 0 && m_frame.Response().Size() < kShortestGrant)) {
        LogLine(m_frame, LOG_RET, "DIAG_READ_ESN_F() -- failed NV Read");
        return false;
    }
    if (iStatus != 0) {
        LogLine(m_frame, LOG_RET, "DIAG_READ_ESN_F() -- failed NV Read, status %d", iStatus);
        return false;
    }
    unsigned short iPosition = 0;
    ResponseReader({aEsn, sizeof aEsn}, iPosition).Take(iESN);
    LogLine(m_frame, LOG_RET, "DIAG_READ_ESN_F() -- completed ( iESN = 0x%X)", iESN);
    return true;
}
