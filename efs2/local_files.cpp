#include "efs2/local_files.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <optional>

#include "platform/local_files.h"

DownloadTarget::DownloadTarget(const char* sFileName) : m_hFile(std::fopen(sFileName, "wb")) {
    Note(m_hFile != nullptr);
}

bool DownloadTarget::Note(bool bDone) {
    if (!bDone && m_iErrorNo == 0)
        m_iErrorNo = static_cast<DWORD>(errno);
    return bDone;
}

bool DownloadTarget::Append(std::span<const unsigned char> block) {
    return Note(std::fwrite(block.data(), 1, block.size(), m_hFile.get()) == block.size());
}

bool DownloadTarget::Finish() {
    // A full disk may be reported only when the stream's buffer is flushed.
    const bool bFlushed = Note(std::fflush(m_hFile.get()) == 0 && std::ferror(m_hFile.get()) == 0);
    return Note(std::fclose(m_hFile.release()) == 0) && bFlushed;
}

bool UploadSource::Measure() {
    if (!m_bIsFile) {
        m_iSize = static_cast<DWORD>(m_memory.size());
        return true;
    }
    if (m_sFileName == nullptr)
        return false;
    const std::optional<DWORD> size = LocalFileSize(m_sFileName);
    m_iSize = size.value_or(m_iSize);
    return size.has_value();
}

bool UploadSource::Open() {
    if (!Measure())
        return false;
    m_iTaken = 0;
    if (m_bIsFile)
        m_hFile.reset(std::fopen(m_sFileName, "rb"));
    if (!m_bIsFile || m_hFile != nullptr)
        return true;
    m_iErrorNo = static_cast<DWORD>(errno);
    return false;
}

std::span<const unsigned char> UploadSource::Next(std::span<unsigned char> area) {
    const auto iRoom = static_cast<DWORD>(std::min<size_t>(area.size(), UINT32_MAX - m_iTaken));
    DWORD iCount = 0;
    std::span<const unsigned char> block;
    if (m_bIsFile) {
        iCount = static_cast<DWORD>(std::fread(area.data(), 1, iRoom, m_hFile.get()));
        block = area.first(iCount);
        if (std::ferror(m_hFile.get()) != 0 && m_iErrorNo == 0)
            m_iErrorNo = static_cast<DWORD>(errno);
    } else {
        iCount = std::min(iRoom, m_iSize - m_iTaken);
        block = m_memory.subspan(m_iTaken, iCount);
    }
    m_iTaken += iCount;
    return block;
}

bool UploadSource::IsExhausted() const {
    return m_iTaken >= m_iSize && (!m_bIsFile || std::ferror(m_hFile.get()) == 0);
}
