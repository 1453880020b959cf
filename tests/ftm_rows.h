// Tables of factory-test commands: each row is a call, its bytes on the wire, and what comes out of it. A row
// is run against its good answer, every beginning of that answer, and answers with wrong headers.
#pragma once

#include <cstring>
#include <functional>
#include <sstream>

#include "phone_fixture.h"

/// Where a call puts its out-values: preset (b: B0 B1 ..., h and s: C0C0 C0C1 ..., w: E0E0E0E0 ...), so that
/// the placeholders of a request can be seen, and what was left alone.
struct FtmOuts {
    unsigned char b[16] = {0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xB5, 0xB6, 0xB7,
                           0xB8, 0xB9, 0xBA, 0xBB, 0xBC, 0xBD, 0xBE, 0xBF};
    unsigned short h[7] = {0xC0C0, 0xC0C1, 0xC0C2, 0xC0C3, 0xC0C4, 0xC0C5, 0xC0C6};
    short s[1] = {-0x3F40};
    DWORD w[5] = {0xE0E0E0E0, 0xE0E0E0E1, 0xE0E0E0E2, 0xE0E0E0E3, 0xE0E0E0E4};

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
        if (cKind == 'b')
            b[i] = static_cast<unsigned char>(iValue);
        else if (cKind == 'h')
            h[i] = static_cast<unsigned short>(iValue);
        else if (cKind == 's' || cKind == 'd')
            s[i] = static_cast<short>(iValue);
        else if (cKind == 'w')
            w[i] = iValue;
    }
};

/// Stands for an out-value among the arguments of a row's call, and &h0 for a pointer to it.
template <auto Values>
struct FtmOut {
    size_t i;
};
constexpr FtmOut<&FtmOuts::b> b0{0}, b1{1}, b2{2}, b3{3}, b4{4}, b5{5}, b6{6};
constexpr FtmOut<&FtmOuts::h> h0{0}, h1{1}, h2{2}, h3{3}, h4{4};
constexpr FtmOut<&FtmOuts::s> s0{0};
constexpr FtmOut<&FtmOuts::w> w0{0}, w1{1}, w2{2}, w3{3}, w4{4};

template <class Value>
const Value& Bound(FtmOuts&, const Value& value) {
    return value;
}
template <auto Values>
auto& Bound(FtmOuts& outs, const FtmOut<Values>& out) {
    return (outs.*Values)[out.i];
}
template <auto Values>
auto* Bound(FtmOuts& outs, const FtmOut<Values>* pOut) {
    return &(outs.*Values)[pOut->i];
}

/// The numbers among a call's arguments: constants, and out-values as they stand.
using Numbers = std::vector<int>;
template <class Argument>
constexpr bool kIsOut = requires(Argument argument) {
    argument.i;
}
|| requires(Argument argument) {
    argument->i;
};
template <class Argument>
void AddNumber(Numbers& numbers, FtmOuts& outs, const Argument& argument, bool bConstants, bool bOuts) {
    const auto& bound = Bound(outs, argument);
    if (!(kIsOut<Argument> ? bOuts : bConstants))
        return;
    if constexpr (!std::is_pointer_v<std::remove_cvref_t<decltype(bound)>>)
        numbers.push_back(static_cast<int>(bound));
    else if constexpr (kIsOut<Argument>)
        numbers.push_back(static_cast<int>(*bound));
}

/// A method and its arguments.
struct FtmCall {
    std::string sName;
    std::function<bool(Diag_FTM& diag, FtmOuts& outs)> run;
    std::function<Numbers(FtmOuts outs, bool bConstants, bool bOuts)> numbers;
};
template <class Family, class... Parameters, class... Arguments>
FtmCall Do(const char* sName, bool (Family::*pMethod)(Parameters...), Arguments... arguments) {
    const auto run = [=](Diag_FTM& diag, FtmOuts& outs) {
        return (diag.*pMethod)(Bound(outs, arguments)...);
    };
    const auto numbers = [=]([[maybe_unused]] FtmOuts outs, [[maybe_unused]] bool bConstants,
                             [[maybe_unused]] bool bOuts) {
        Numbers all;
        (AddNumber(all, outs, arguments, bConstants, bOuts), ...);
        return all;
    };
    return {sName, run, numbers};
}
#define DO(METHOD, ...) Do(#METHOD, &Diag_FTM::METHOD __VA_OPT__(, ) __VA_ARGS__)

/// A command. Bytes in hex, those of request and answer behind the header; answer "": the request comes back.
struct FtmRow {
    std::string sRequest;
    FtmCall call;
    std::string sAnswer = "";
    /// The out-values in the order in which they are taken from the answer's end: b0, h0, s0, w0 as in
    /// FtmOuts; d0: 32 bits, of which s0 gets the low half; x1, x2: one or two bytes that are thrown away. A
    /// ? in front: the result is true although values are missing.
    std::string sTakes = "";
    /// The log lines of operation and result, or "-" where there are none. "": one line with the method's
    /// name and all constants among the arguments, with or without the out-values before the call; one line
    /// with the name and, at its end, the out-values, when there are any.
    std::string sEntry = "";
    std::string sResult = "";

    bool HasResult() const {
        return sResult.empty() ? sTakes.find_first_of("bhsw") != std::string::npos : sResult != "-";
    }
};
using FtmTable = std::vector<FtmRow>;

class FtmRowsTest : public PhoneTest {
protected:
    /// The out-values before each call.
    FtmOuts m_preset;

    FtmRowsTest() { m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 1000); }

    /// What the call makes of an answer to everything; its out-values are in m_outs.
    std::string Run(const FtmRow& row, const Bytes& answer) {
        m_log.Clear();
        m_phone.phone.ClearRequests();
        m_phone.Answer("", answer);
        m_outs = m_preset;
        const bool bResult = row.call.run(m_diag, m_outs);
        return m_outs.Text(bResult);
    }
    static Bytes GoodAnswer(const FtmRow& row, const std::string& sHeader) {
        return Hex(sHeader + " " + (row.sAnswer.empty() ? row.sRequest : row.sAnswer));
    }
    /// What must come out when values are taken from that answer, read backwards from iPosition.
    static std::string Taken(const FtmRow& row, const Bytes& answer, size_t iPosition = 0) {
        FtmOuts outs;
        std::istringstream takes(row.sTakes);
        const bool bAnyway = takes.peek() == '?' && takes.get();
        bool bAll = true;
        for (std::string sTake; bAll && takes >> sTake;) {
            const char cKind = sTake.at(0);
            const size_t i = static_cast<size_t>(sTake.at(1) - '0');
            const size_t iSize = cKind == 'b' ? 1 : cKind == 'h' || cKind == 's' ? 2 : cKind == 'x' ? i : 4;
            if (iPosition == 0)
                iPosition = answer.size();
            if ((bAll = iSize <= iPosition)) {
                iPosition -= iSize;
                const auto begin = answer.begin() + static_cast<long>(iPosition);
                Bytes value(begin, begin + static_cast<long>(iSize));
                value.resize(4);
                outs.Store(cKind, i, ValueAt(value, 0));
            }
        }
        return outs.Text(bAll || bAnyway);
    }

    /// Requests, outcomes and log lines of every row.
    void CheckWire(const FtmTable& rows, const std::string& sHeader = "4B 0B 01 00") {
        for (const FtmRow& row : rows) {
            const Bytes answer = GoodAnswer(row, sHeader);
            EXPECT_EQ(Run(row, answer), Taken(row, answer)) << row.sRequest;
            EXPECT_EQ(m_phone.Requests(), std::vector{sHeader + " " + row.sRequest});
            CheckLog(row);
        }
    }
    /// The log lines of the call that was just run.
    void CheckLog(const FtmRow& row) {
        const bool bCounted = row.sEntry.size() == 1 && row.sEntry != "-";
        const Numbers entry = CheckLines(LOG_FN, row, bCounted ? "" : row.sEntry, true);
        Numbers constants = row.call.numbers({}, true, false);
        if (bCounted)
            constants.resize(static_cast<size_t>(row.sEntry[0] - '0'));
        EXPECT_TRUE(row.sEntry.size() > 1 || row.sEntry == "-" || entry == constants ||
                    entry == row.call.numbers({}, true, true))
            << row.call.sName;
        const Numbers result = CheckLines(LOG_RET, row, row.sResult, row.HasResult());
        const Numbers outs = row.call.numbers(m_outs, false, true);
        EXPECT_TRUE(!row.sResult.empty() || !row.HasResult() ||
                    (outs.size() <= result.size() && std::equal(outs.rbegin(), outs.rend(), result.rbegin())))
            << row.call.sName;
    }
    /// Every beginning of every good answer: nothing changes while it is shorter than iHeader bytes, and what
    /// follows is taken from what there is.
    void CheckShortAnswers(const FtmTable& rows, size_t iHeader, const std::string& sHeader = "4B 0B 01 00") {
        for (const FtmRow& row : rows) {
            Bytes answer = GoodAnswer(row, sHeader);
            while (answer.size() > 1) {
                answer.pop_back();
                const std::string sExpected = answer.size() < iHeader ? "false" : Taken(row, answer);
                EXPECT_EQ(Run(row, answer), sExpected) << row.call.sName << " " << handset::ToHex(answer);
                EXPECT_EQ(m_log.Of(LOG_RET).empty(), answer.size() < iHeader || !row.HasResult());
            }
        }
    }
    /// Answers of another subsystem and another mode: refused, or taken like any other.
    void CheckWrongHeaders(const FtmTable& rows, bool bRefused, const std::string& sHeader = "4B 0B 01 00") {
        for (const FtmRow& row : rows)
            for (const size_t iWrong : {1, 2}) {
                Bytes answer = GoodAnswer(row, sHeader);
                answer[iWrong] ^= 0x40;
                EXPECT_EQ(Run(row, answer), bRefused ? "false" : Taken(row, answer)) << row.call.sName;
                EXPECT_EQ(m_log.Of(LOG_RET).empty(), bRefused || !row.HasResult());
            }
    }

private:
    /// Compares the lines of a category (see FtmRow) and gives the numbers that they show.
    Numbers CheckLines(unsigned iCategory, const FtmRow& row, const std::string& sExpected, bool bOneLine) {
        std::string sLines;
        for (const std::string& sLine : m_log.Of(iCategory))
            sLines += (sLines.empty() ? "" : "\n") + sLine;
        if (!sExpected.empty() || !bOneLine) {
            EXPECT_EQ(sLines, sExpected == "-" ? "" : sExpected);
        } else {
            EXPECT_TRUE(sLines.starts_with("QLIB_" + row.call.sName + "(") &&
                        sLines.find('\n') == std::string::npos)
                << sLines;
        }
        sLines.erase(0, sLines.find('('));
        std::replace_if(
            sLines.begin(), sLines.end(), [](char c) { return std::strchr(" =,(){}", c) != nullptr; }, ' ');
        Numbers numbers;
        std::istringstream words(sLines);
        for (std::string sWord; words >> sWord;) {
            char* pEnd = nullptr;
            const long iNumber = std::strtol(sWord.c_str(), &pEnd, 0);
            if (*pEnd == '\0')
                numbers.push_back(static_cast<int>(iNumber));
        }
        return numbers;
    }

    FtmOuts m_outs;
};
