#include "diag/download.h"

#include <string_view>

#include "diag/command.h"
#include "diag/command_codes.h"

bool DownloadGreeting::DOWNLOAD_Hello(unsigned char iVersionNumber, unsigned char iCompatibleVersion,
                                      unsigned char iFeatureBits, unsigned char* piResponse) {
    static constexpr std::string_view kGreeting = "QCOM Fast download protocol host";
    LogLine(m_frame, LOG_FN,
            "QLIB_DOWNLOAD_Hello( iVersionNumber = %d, iCompatibleVersion = %d, iFeatureBits = %d )",
            iVersionNumber, iCompatibleVersion, iFeatureBits);
    RequestBuilder& greeting = m_frame.BeginRequest().U8(DIAG_DOWNLOAD_HELLO);
    for (const char cByte : kGreeting)
        greeting.U8(static_cast<unsigned char>(cByte));
    greeting.U8(iVersionNumber).U8(iCompatibleVersion).U8(iFeatureBits);
    const bool bGreeted = m_frame.SendWithDifferentResponseCmd(DIAG_DOWNLOAD_HELLO_ANSWER, 0);
    m_frame.BeginRequest().U8(DIAG_DOWNLOAD_NOP);
    // Without a response the buffer pair holds nothing from the phone.
    if (m_frame.Send(0) && bGreeted && piResponse != nullptr)
        m_frame.Response().BytesAt(0, {piResponse, m_frame.Response().Size()});
    return bGreeted;
}

bool DownloadGreeting::DOWNLOAD_Ping() {
    return DOWNLOAD_Hello(3, 2, 1, nullptr);
}
