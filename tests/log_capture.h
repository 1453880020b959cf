// Captures what a connection writes to its text log.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "link/diag_connection.h"

/// LogCapture keeps every message as "category-bit text", such as "0x0002 QLIB_OpenPort()". The destructor
/// removes its callback from the connection.
class LogCapture {
public:
    explicit LogCapture(DiagConnection& connection, unsigned iMask = 0xFFFFFFFF) : m_connection(connection) {
        connection.SetLogFlags(iMask);
        connection.ConfigureLibraryTextLogCallBack(this, &LogCapture::Receive);
    }
    ~LogCapture() { m_connection.ConfigureLibraryTextLogCallBack(nullptr, nullptr); }

    std::vector<std::string> Lines() const {
        const std::lock_guard lock(m_lock);
        return m_lines;
    }

    void Clear() {
        const std::lock_guard lock(m_lock);
        m_lines.clear();
    }

    /// Returns the texts of one category in order.
    std::vector<std::string> Of(unsigned iCategory) const {
        std::vector<std::string> texts;
        for (const std::string& sLine : Lines())
            if (std::stoul(sLine, nullptr, 16) == iCategory)
                texts.push_back(sLine.substr(sLine.find(' ') + 1));
        return texts;
    }

    bool Has(unsigned iCategory, const std::string& sText) const {
        return std::ranges::count(Of(iCategory), sText) > 0;
    }

private:
    static void Receive(unsigned short iSize, unsigned char* pRecord, void* pUserData) {
        ASSERT_EQ(iSize, sizeof(TextLogRecord));
        const auto* pText = reinterpret_cast<const TextLogRecord*>(pRecord);
        char sCategory[16];
        snprintf(sCategory, sizeof sCategory, "0x%04X ", pText->iCategory);
        auto* pCapture = static_cast<LogCapture*>(pUserData);
        const std::lock_guard lock(pCapture->m_lock);
        pCapture->m_lines.push_back(std::string(sCategory) + pText->sText);
    }

    DiagConnection& m_connection;
    mutable std::mutex m_lock;
    std::vector<std::string> m_lines;
};
