#include "efs2/file_attributes.h"

#include <cstring>

#include "diag/command.h"
#include "efs2/exchange.h"

namespace {

constexpr unsigned char kFileSystemOperation = 89;
constexpr unsigned char kGetAttributes = 7;
constexpr unsigned char kSetAttributes = 8;
constexpr size_t kLongestPath = 254;
constexpr size_t kValuesSize = 3 * sizeof(DWORD);

} // namespace

RequestBuilder* FileAttributes::BeginAttributes(unsigned char iOperation, const char* sPath) {
    const size_t iLength = std::strlen(sPath);
    if (iLength > kLongestPath)
        return nullptr;
    return &m_frame.BeginRequest()
                .U8(kFileSystemOperation)
                .U8(iOperation)
                .EndHeader()
                .U8(static_cast<unsigned>(iLength + 1))
                .Text(sPath);
}

bool FileAttributes::DIAG_GET_FILE_ATTRIBUTES(const char* sPath, DWORD* piFirst, DWORD* piSecond,
                                              DWORD* piThird) {
    if (BeginAttributes(kGetAttributes, sPath) == nullptr || !AskWholeRequest(m_frame))
        return false;
    ResponseReader response = m_frame.Response();
    if (response.Size() >= kValuesSize) {
        response.Take(*piThird);
        response.Take(*piSecond);
        response.Take(*piFirst);
    }
    return true;
}

bool FileAttributes::DIAG_SET_FILE_ATTRIBUTES(const char* sPath, DWORD iFirst, DWORD iSecond) {
    RequestBuilder* pRequest = BeginAttributes(kSetAttributes, sPath);
    if (pRequest == nullptr)
        return false;
    pRequest->U32(iFirst).U32(iSecond);
    return SendWholeRequest(m_frame);
}
