// Work that takes several requests, for the phone's thread: one block or entry per step.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "mount/phone_folder.h"
#include "mount/phone_thread.h"

namespace tools::mount {

/// The objects that the works use.
struct Phone {
    PhoneSession& session;
    PhoneFolder& folder;
    PhoneThread& thread;
};

/// ReadWork reads a piece of a file.
class ReadWork {
public:
    ReadWork(const Phone& phone, OpenFilePtr file, uint64_t offset, size_t size)
        : m_phone(phone), m_file(std::move(file)), m_offset(offset), m_data(size) {}
    bool Step();
    /// The data that was read; less than requested at the end of the file.
    std::span<const unsigned char> Data() const { return std::span(m_data).first(m_done); }

private:
    const Phone m_phone;
    const OpenFilePtr m_file;
    const uint64_t m_offset;
    std::vector<unsigned char> m_data;
    size_t m_done = 0;
};

/// WriteWork writes a piece of a file.
class WriteWork {
public:
    WriteWork(const Phone& phone, OpenFilePtr file, uint64_t offset, std::span<const unsigned char> data)
        : m_phone(phone), m_file(std::move(file)), m_offset(offset), m_data(data.begin(), data.end()) {}
    /// Throws when not even the first block was written.
    bool Step();
    /// How many bytes the phone acknowledged.
    size_t Done() const { return m_done; }

private:
    const Phone m_phone;
    const OpenFilePtr m_file;
    const uint64_t m_offset;
    const std::vector<unsigned char> m_data;
    size_t m_done = 0;
};

/// ListWork reads a folder.
class ListWork {
public:
    ListWork(const Phone& phone, std::string folder) : m_phone(phone), m_folder(std::move(folder)) {}
    /// Closes the folder on the phone when the work was interrupted.
    ~ListWork();
    ListWork(const ListWork&) = delete;
    ListWork& operator=(const ListWork&) = delete;

    bool Step();
    std::shared_ptr<const Listing> Result() const { return m_listing; }

private:
    void Open();
    bool TakeEntry();
    void Close();

    const Phone m_phone;
    const std::string m_folder;
    std::shared_ptr<Listing> m_listing;
    Clock::time_point m_begin;
    unsigned m_epoch = 0;
    DWORD m_directory = 0; // 0: not open
    DWORD m_sequence = 0;
};

/// ResizeWork changes the length of a file. The phone can only empty files. To make one shorter, its
/// beginning is copied, and the complete copy replaces the file.
class ResizeWork {
public:
    ResizeWork(const Phone& phone, std::string path, uint64_t length)
        : m_phone(phone), m_path(std::move(path)), m_length(length) {}
    /// Removes the copy when the work was interrupted.
    ~ResizeWork();
    ResizeWork(const ResizeWork&) = delete;
    ResizeWork& operator=(const ResizeWork&) = delete;

    bool Step();

private:
    bool Begin();
    void Empty();
    void Extend();
    void BeginCopy(uint32_t permissions);
    void CopyBlock();
    void ReplaceOriginal();

    const Phone m_phone;
    const std::string m_path;
    const uint64_t m_length;
    OpenFilePtr m_original;
    OpenFilePtr m_copy;
    uint64_t m_done = 0;
};

} // namespace tools::mount
