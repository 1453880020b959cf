// A simulated handset on COM1, and a connection to it, for tests that look at the wire.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "handset/device_root.h"
#include "handset/file_system.h"
#include "handset/handset.h"
#include "log_capture.h"
#include "qlib/diag_ftm.h"

using handset::Bytes;
using Action = handset::Misbehaviour::Action;

/// Hex("4B 13") as bytes; a mistake in it fails the test.
inline Bytes Hex(const std::string& sText) {
    Bytes bytes;
    EXPECT_TRUE(handset::FromHex(sText, bytes)) << sText;
    return bytes;
}

/// A packet: bytes in hex, then 32-bit values, then a text without a zero at its end.
inline Bytes Packet(const std::string& sHex, std::initializer_list<uint32_t> values = {},
                    const std::string& sTail = "") {
    Bytes packet = Hex(sHex);
    for (const uint32_t iValue : values)
        for (int i = 0; i < 32; i += 8)
            packet.push_back(static_cast<uint8_t>(iValue >> i));
    packet.insert(packet.end(), sTail.begin(), sTail.end());
    return packet;
}

/// The 32-bit value at an offset of a packet.
inline uint32_t ValueAt(const Bytes& packet, size_t iOffset) {
    uint32_t iValue = 0;
    for (size_t i = 4; i > 0; --i)
        iValue = iValue << 8 | packet.at(iOffset + i - 1);
    return iValue;
}

/// PluggedPhone is a handset in a device root that the product looks into: COM1 (and COM51, without a line).
struct PluggedPhone {
    PluggedPhone() {
        setenv("QUILLET_DEVICE_ROOT", root.Path().c_str(), 1);
        root.Plug(phone);
    }
    ~PluggedPhone() { unsetenv("QUILLET_DEVICE_ROOT"); }

    /// The requests that arrived, in hex.
    std::vector<std::string> Requests() const {
        std::vector<std::string> texts;
        for (const Bytes& request : phone.Requests())
            texts.push_back(handset::ToHex(request));
        return texts;
    }
    /// How many requests with that beginning arrived.
    int CountOf(const std::string& sPrefix) const {
        int iCount = 0;
        for (const Bytes& request : phone.Requests())
            iCount += handset::BeginsWith(request, Hex(sPrefix)) ? 1 : 0;
        return iCount;
    }

    void Misbehave(Action eAction, const std::string& sPrefix, int iTimes = 1, uint32_t iValue = 0,
                   int iSkip = 0) {
        phone.Misbehave(
            {.action = eAction, .prefix = Hex(sPrefix), .skip = iSkip, .times = iTimes, .value = iValue});
    }
    /// Answers every request with that beginning with one packet.
    void Answer(const std::string& sPrefix, const Bytes& packet) { phone.Script(Hex(sPrefix), {packet}); }

    void AddFile(const std::string& sPath, const Bytes& content) {
        phone.WithFiles([&](handset::FileSystem& files) { files.AddFile(sPath, content); });
    }
    bool Exists(const std::string& sPath) {
        bool bExists = false;
        phone.WithFiles([&](handset::FileSystem& files) { bExists = files.Exists(sPath); });
        return bExists;
    }
    /// The content of a phone file; one that does not exist fails the test.
    Bytes Content(const std::string& sPath) {
        std::optional<Bytes> content;
        phone.WithFiles([&](handset::FileSystem& files) { content = files.Content(sPath); });
        EXPECT_TRUE(content.has_value()) << sPath;
        return content.value_or(Bytes{});
    }
    /// Files and folders that the client has not closed.
    size_t OpenCount() {
        size_t iCount = 0;
        phone.WithFiles(
            [&](handset::FileSystem& files) { iCount = files.OpenFileCount() + files.OpenFolderCount(); });
        return iCount;
    }

    handset::DeviceRoot root;
    handset::Handset phone;
};

/// A folder for local files, removed at the end.
class LocalFolder {
public:
    LocalFolder() {
        std::string sPattern = (std::filesystem::temp_directory_path() / "quillet-files-XXXXXX").string();
        EXPECT_NE(mkdtemp(sPattern.data()), nullptr);
        m_path = sPattern;
    }
    ~LocalFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    LocalFolder(const LocalFolder&) = delete;
    LocalFolder& operator=(const LocalFolder&) = delete;

    std::string Path(const std::string& sName = "") const { return (m_path / sName).string(); }
    /// Makes a file and gives its path.
    std::string Write(const std::string& sName, const Bytes& content) const {
        std::ofstream(Path(sName), std::ios::binary)
            .write(reinterpret_cast<const char*>(content.data()),
                   static_cast<std::streamsize>(content.size()));
        return Path(sName);
    }
    bool Has(const std::string& sName) const { return std::filesystem::exists(m_path / sName); }
    Bytes Read(const std::string& sName) const {
        std::ifstream file(Path(sName), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

private:
    std::filesystem::path m_path;
};

/// Bytes that repeat late, so that no block looks like another.
inline Bytes Pattern(size_t iSize) {
    Bytes bytes(iSize);
    for (size_t i = 0; i < iSize; ++i)
        bytes[i] = static_cast<uint8_t>(i * 7 + i / 251);
    return bytes;
}

/// An open connection to the handset, and its log of operations, results and errors.
class PhoneTest : public testing::Test {
protected:
    PhoneTest() {
        EXPECT_TRUE(m_diag.OpenPort());
        m_log.Clear();
    }

    PluggedPhone m_phone;
    Diag_FTM m_diag{1};
    LogCapture m_log{m_diag, LOG_FN | LOG_RET | LOG_ERR};
};
