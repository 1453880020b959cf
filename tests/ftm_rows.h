// Tables of factory-test commands: each row is a call, its bytes on the wire, and what comes out of it. A row
// is run against its good answer, every beginning of that answer, and answers with wrong headers.
#pragma once

#include <sstream>

#include "phone_fixture.h"

/// Where a call puts its out-values: preset (b: B0 B1 ..., h and s: C0C0 C0C1 ..., w: E0E0E0E0 ...), so that
/// the placeholders of a request can be seen, and what was left alone.
struct FtmOuts {
    unsigned char b[7] = {0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xB5, 0xB6};
    unsigned short h[7] = {0xC0C0, 0xC0C1, 0xC0C2, 0xC0C3, 0xC0C4, 0xC0C5, 0xC0C6};
    short s[2] = {-0x3F40, -0x3F3F};
    DWORD w[7] = {0xE0E0E0E0, 0xE0E0E0E1, 0xE0E0E0E2, 0xE0E0E0E3, 0xE0E0E0E4, 0xE0E0E0E5, 0xE0E0E0E6};

    /// The result, and the values that changed: "true h0=ff2c".
    std::string Text(bool bResult) const {
        const FtmOuts preset;
        std::ostringstream text;
        text << (bResult ? "true" : "false") << std::hex;
        const auto print = [&text](char cKind, const auto& values, const auto& before) {
            for (size_t i = 0; i < std::size(values); ++i)
                if (values[i] != before[i])
                    text << ' ' << cKind << i << '='
                         << (static_cast<uint32_t>(values[i]) & (~0U >> (32 - 8 * sizeof values[i])));
        };
        print('b', b, preset.b);
        print('h', h, preset.h);
        print('s', s, preset.s);
        print('w', w, preset.w);
        return text.str();
    }
    void Store(char cKind, size_t i, uint32_t iValue) {
        switch (cKind) {
            case 'b':
                b[i] = static_cast<unsigned char>(iValue);
                break;
            case 'h':
                h[i] = static_cast<unsigned short>(iValue);
                break;
            case 's':
            case 'd':
                s[i] = static_cast<short>(iValue);
                break;
            case 'w':
                w[i] = iValue;
                break;
            default:
                break;
        }
    }
};

/// A command. Bytes in hex, those of request and answer behind the header; answer "": the request comes back.
struct FtmRow {
    const char* sRequest;
    const char* sAnswer;
    /// The out-values in the order in which they are taken from the answer's end: b0, h0, s0, w0 as in
    /// FtmOuts; d0: 32 bits, of which s0 gets the low half; x1, x2: one or two bytes that are thrown away. A
    /// ? in front: the result is true although values are missing.
    const char* sTakes;
    const char* sOutcome;
    /// Log lines of operation and result (several: with \n between them), behind m_sLogBegin; null: no line.
    const char* sEntry;
    const char* sResult;
    bool (*call)(Diag_FTM& diag, FtmOuts& o);
};

class FtmRowsTest : public PhoneTest {
protected:
    FtmRowsTest() { m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 1000); }

    std::string m_sLogBegin = "QLIB_FTM_";

    /// What the call makes of an answer to everything, and the requests that it sent in m_sRequests.
    std::string Run(const FtmRow& row, const Bytes& answer) {
        m_log.Clear();
        m_phone.phone.ClearRequests();
        m_phone.Answer("", answer);
        FtmOuts outs;
        const bool bResult = row.call(m_diag, outs);
        return outs.Text(bResult);
    }
    /// Requests with that beginning come back as they are.
    void Echo(const std::string& sPrefix) {
        m_phone.phone.Script(Hex(sPrefix), [](const Bytes& request) { return std::vector<Bytes>{request}; });
    }
    static Bytes GoodAnswer(const FtmRow& row, const std::string& sHeader) {
        return Hex(sHeader + " " + (*row.sAnswer != '\0' ? row.sAnswer : row.sRequest));
    }
    /// What must come out when values are taken from that answer, read backwards from iPosition.
    static std::string Taken(const FtmRow& row, const Bytes& answer, size_t iPosition) {
        FtmOuts outs;
        std::istringstream takes(row.sTakes);
        bool bAnyway = takes.peek() == '?' && takes.get();
        bool bAll = true;
        for (std::string sTake; bAll && takes >> sTake;) {
            const size_t i = static_cast<size_t>(sTake.at(1) - '0');
            const size_t iSize = sTake[0] == 'b'                      ? 1
                                 : sTake[0] == 'x'                    ? i
                                 : sTake[0] == 'w' || sTake[0] == 'd' ? 4
                                                                      : 2;
            if (iPosition == 0)
                iPosition = answer.size();
            if ((bAll = iSize <= iPosition)) {
                iPosition -= iSize;
                Bytes value(answer.begin() + static_cast<long>(iPosition),
                            answer.begin() + static_cast<long>(iPosition + iSize));
                value.resize(4);
                outs.Store(sTake[0], i, ValueAt(value, 0));
            }
        }
        return outs.Text(bAll || bAnyway);
    }

    /// Requests, outcomes and log lines of every row.
    void CheckWire(std::span<const FtmRow> rows, const std::string& sHeader = "4B 0B 01 00") {
        for (const FtmRow& row : rows) {
            EXPECT_EQ(Run(row, GoodAnswer(row, sHeader)), row.sOutcome) << row.sRequest;
            EXPECT_EQ(m_phone.Requests(),
                      std::vector{sHeader + (*row.sRequest != '\0' ? " " : "") + row.sRequest});
            CheckLog(LOG_FN, row.sEntry);
            CheckLog(LOG_RET, row.sResult);
        }
    }
    /// Every beginning of every good answer: nothing changes while it is shorter than iHeader bytes, and what
    /// follows is taken from what there is.
    void CheckShortAnswers(std::span<const FtmRow> rows, size_t iHeader,
                           const std::string& sHeader = "4B 0B 01 00") {
        for (const FtmRow& row : rows) {
            Bytes answer = GoodAnswer(row, sHeader);
            while (answer.size() > 1) {
                answer.pop_back();
                const std::string sExpected = answer.size() < iHeader ? "false" : Taken(row, answer, 0);
                EXPECT_EQ(Run(row, answer), sExpected) << row.sEntry << " " << handset::ToHex(answer);
                EXPECT_EQ(m_log.Of(LOG_RET).empty(), answer.size() < iHeader || row.sResult == nullptr);
            }
        }
    }
    /// Answers of another subsystem and another mode: refused, or taken like any other.
    void CheckWrongHeaders(std::span<const FtmRow> rows, bool bRefused,
                           const std::string& sHeader = "4B 0B 01 00") {
        for (const FtmRow& row : rows) {
            for (const size_t iWrong : {1, 2}) {
                Bytes answer = GoodAnswer(row, sHeader);
                answer[iWrong] ^= 0x40;
                EXPECT_EQ(Run(row, answer), bRefused ? "false" : row.sOutcome) << row.sEntry;
                EXPECT_EQ(m_log.Of(LOG_RET).empty(), bRefused || row.sResult == nullptr);
            }
        }
    }

private:
    void CheckLog(unsigned iCategory, const char* sText) {
        std::vector<std::string> expected;
        std::istringstream lines(sText != nullptr ? sText : "");
        for (std::string sLine; std::getline(lines, sLine);)
            expected.push_back(m_sLogBegin + sLine);
        EXPECT_EQ(m_log.Of(iCategory), expected);
    }
};
