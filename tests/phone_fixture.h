// A simulated handset on COM1 and a connection to it, for tests that examine the traffic.
#pragma once

#include <initializer_list>
#include <tuple>

#include "handset/device_root.h"
#include "handset/file_system.h"
#include "handset/handset.h"
#include "local_folder.h"
#include "log_capture.h"
#include "qlib/diag_ftm.h"

using handset::Bytes;
using Lines = std::vector<std::string>;
using Action = handset::Misbehaviour::Action;

// Prefixes of requests on the wire.
const std::string kOpenFile = "4B 13 02 00";
const std::string kCloseFile = "4B 13 03 00";
const std::string kRead = "4B 13 04 00";
const std::string kWrite = "4B 13 05 00";
const std::string kReadLink = "4B 13 07 00";
const std::string kMakeLink = "4B 13 06 00";
const std::string kUnlink = "4B 13 08 00";
const std::string kOpenFolder = "4B 13 0B 00";
const std::string kReadFolder = "4B 13 0C 00";
const std::string kCloseFolder = "4B 13 0D 00";
const std::string kStat = "4B 13 0F 00";
const std::string kStatFs = "4B 13 13 00";

/// Converts hex such as "4B 13" to bytes. Malformed hex fails the test.
inline Bytes Hex(const std::string& sText) {
    Bytes bytes;
    EXPECT_TRUE(handset::FromHex(sText, bytes)) << sText;
    return bytes;
}

/// Returns a packet: bytes in hex, then 32-bit values, then a text without a terminating zero.
inline Bytes Packet(const std::string& sHex, std::initializer_list<uint32_t> values = {},
                    const std::string& sTail = "") {
    Bytes packet = Hex(sHex);
    for (const uint32_t iValue : values)
        for (int i = 0; i < 32; i += 8)
            packet.push_back(static_cast<uint8_t>(iValue >> i));
    packet.insert(packet.end(), sTail.begin(), sTail.end());
    return packet;
}

/// Returns the 32-bit value at an offset in a packet.
inline uint32_t ValueAt(const Bytes& packet, size_t iOffset) {
    uint32_t iValue = 0;
    for (size_t i = 4; i > 0; --i)
        iValue = iValue << 8 | packet.at(iOffset + i - 1);
    return iValue;
}

/// PluggedPhone is a simulated handset in the device root that the product uses. It is on COM1; its COM51 has
/// no line.
struct PluggedPhone {
    PluggedPhone() {
        setenv("QUILLET_DEVICE_ROOT", root.Path().c_str(), 1);
        root.Plug(phone);
    }
    ~PluggedPhone() { unsetenv("QUILLET_DEVICE_ROOT"); }

    /// Returns the requests that arrived, in hex.
    Lines Requests() const {
        Lines texts;
        for (const Bytes& request : phone.Requests())
            texts.push_back(handset::ToHex(request));
        return texts;
    }
    /// Returns how many requests with that prefix arrived.
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
    /// Sends `packet` in response to every request with that prefix.
    void Answer(const std::string& sPrefix, const Bytes& packet) { phone.Script(Hex(sPrefix), {packet}); }

    void AddFile(const std::string& sPath, const Bytes& content) {
        phone.WithFiles([&](handset::FileSystem& files) { files.AddFile(sPath, content); });
    }
    void AddFolder(const std::string& sPath) {
        phone.WithFiles([&](handset::FileSystem& files) { files.AddFolder(sPath); });
    }
    void AddLink(const std::string& sPath, const std::string& sTarget) {
        phone.WithFiles([&](handset::FileSystem& files) { files.AddLink(sPath, sTarget); });
    }
    bool Exists(const std::string& sPath) {
        bool bExists = false;
        phone.WithFiles([&](handset::FileSystem& files) { bExists = files.Exists(sPath); });
        return bExists;
    }
    /// Returns the content of a file on the phone. A missing file fails the test.
    Bytes Content(const std::string& sPath) {
        std::optional<Bytes> content;
        phone.WithFiles([&](handset::FileSystem& files) { content = files.Content(sPath); });
        EXPECT_TRUE(content.has_value()) << sPath;
        return content.value_or(Bytes{});
    }
    /// Returns how many files and folders the client has not closed.
    size_t OpenCount() {
        size_t iCount = 0;
        phone.WithFiles(
            [&](handset::FileSystem& files) { iCount = files.OpenFileCount() + files.OpenFolderCount(); });
        return iCount;
    }

    handset::DeviceRoot root;
    handset::Handset phone;
};

/// Returns bytes with a long period, so that no two blocks are equal.
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
