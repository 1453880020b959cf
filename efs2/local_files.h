// The local side of a transfer: the target file of a download, the source of an upload.
#pragma once

#include <cstdio>
#include <memory>
#include <span>

#include "platform/types.h"

/// LocalFile is an open stream, closed together with its owner.
struct LocalFileCloser {
    void operator()(std::FILE* hFile) const { std::fclose(hFile); }
};
using LocalFile = std::unique_ptr<std::FILE, LocalFileCloser>;

/// DownloadTarget is the local file that a download writes. It is complete only when Finish has returned
/// true.
class DownloadTarget {
public:
    /// Creates or truncates the file; IsOpen is false when that failed.
    explicit DownloadTarget(const char* sFileName);
    bool IsOpen() const { return m_hFile != nullptr; }
    /// Appends a block; false when not all of it could be written (the disk is full).
    bool Append(std::span<const unsigned char> block);
    /// Closes the file. True when every byte of every block was written to disk.
    bool Finish();
    /// errno's value of what failed first; 0 when nothing did.
    DWORD ErrorNo() const { return m_iErrorNo; }

private:
    bool Note(bool bDone);

    LocalFile m_hFile;
    DWORD m_iErrorNo = 0;
};

/// UploadSource reads a local file or a piece of memory in blocks.
class UploadSource {
public:
    /// A local file; null is treated as a file that does not exist.
    explicit UploadSource(const char* sFileName) : m_sFileName(sFileName), m_bIsFile(true) {}
    /// Memory, which must not change during the upload.
    explicit UploadSource(std::span<const unsigned char> memory) : m_memory(memory) {}

    /// The name of the file; null for memory.
    const char* Name() const { return m_sFileName; }

    /// Measure reads the size. False for a file that does not exist, is not a regular file, or is too large.
    bool Measure();
    /// Open reads the size again and prepares the source for reading.
    bool Open();
    /// The size when last measured.
    DWORD Size() const { return m_iSize; }

    /// Next fills `area` from where the last call ended. The source has ended when it returns fewer bytes, or
    /// none.
    std::span<const unsigned char> Next(std::span<unsigned char> area);
    /// How many bytes have been read.
    DWORD Taken() const { return m_iTaken; }
    /// IsExhausted is true when as many bytes as last measured were read, and no read failed.
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
