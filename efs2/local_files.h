// The local side of a transfer: the file that a download fills, the source that an upload is taken from.
#pragma once

#include <cstdio>
#include <memory>
#include <span>

#include "platform/types.h"

/// LocalFile is an open stream that is closed with its owner.
struct LocalFileCloser {
    void operator()(std::FILE* hFile) const { std::fclose(hFile); }
};
using LocalFile = std::unique_ptr<std::FILE, LocalFileCloser>;

/// DownloadTarget is the file that a download makes. Unless Finish said otherwise, bytes may be missing.
class DownloadTarget {
public:
    /// Makes the file, or empties it. Whether that worked: IsOpen.
    explicit DownloadTarget(const char* sFileName);
    bool IsOpen() const { return m_hFile != nullptr; }
    /// Appends a block; false when not all of it was taken (the disk is full).
    bool Append(std::span<const unsigned char> block);
    /// Closes the file. True when the disk took every byte of every block.
    bool Finish();
    /// errno's value of what failed first; 0 when nothing did.
    DWORD ErrorNo() const { return m_iErrorNo; }

private:
    bool Note(bool bDone);

    LocalFile m_hFile;
    DWORD m_iErrorNo = 0;
};

/// UploadSource hands out, in blocks, the bytes of a local file or of a piece of memory.
class UploadSource {
public:
    /// A local file; null counts as one that does not exist.
    explicit UploadSource(const char* sFileName) : m_sFileName(sFileName), m_bIsFile(true) {}
    /// Memory, which must stay as it is during the upload.
    explicit UploadSource(std::span<const unsigned char> memory) : m_memory(memory) {}

    /// The name of the file; null for memory.
    const char* Name() const { return m_sFileName; }

    /// Measure asks for the size. False for a file that does not exist, is no file, or is too large.
    bool Measure();
    /// Open measures once more and makes the source ready to be read.
    bool Open();
    /// The size when last measured.
    DWORD Size() const { return m_iSize; }

    /// Next fills `area` from where the last call ended. Fewer bytes, or none: the source ends here.
    std::span<const unsigned char> Next(std::span<unsigned char> area);
    /// How many bytes have been handed out.
    DWORD Taken() const { return m_iTaken; }
    /// IsExhausted is true when the source gave all that it promised, and no read of it failed.
    bool IsExhausted() const;
    /// errno's value when the file could not be opened or read; 0 otherwise, and when it is not known.
    DWORD ErrorNo() const { return m_iErrorNo; }

private:
    const char* m_sFileName = nullptr;
    bool m_bIsFile = false;
    std::span<const unsigned char> m_memory;
    LocalFile m_hFile;
    DWORD m_iSize = 0;
    DWORD m_iTaken = 0;
    DWORD m_iErrorNo = 0;
};
