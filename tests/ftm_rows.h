// Tables of factory-test commands. Each row holds a call, its bytes on the wire, its out-values and its log
// lines.
#pragma once

#include <functional>
#include <sstream>

#include "phone_fixture.h"

/// The out-values of a call. They are preset (b: B0 B1 ..., h and s: C0C0 C0C1 ..., w: E0E0E0E0 ...), so that
/// placeholders in requests and unchanged values can be recognised.
struct FtmOuts {
    unsigned char b[16] = {0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xB5, 0xB6, 0xB7,
                           0xB8, 0xB9, 0xBA, 0xBB, 0xBC, 0xBD, 0xBE, 0xBF};
    unsigned short h[5] = {0xC0C0, 0xC0C1, 0xC0C2, 0xC0C3, 0xC0C4};
    short s[1] = {-0x3F40};
    DWORD w[5] = {0xE0E0E0E0, 0xE0E0E0E1, 0xE0E0E0E2, 0xE0E0E0E3, 0xE0E0E0E4};

    /// Returns the result and the values that changed: "true b1=7 h0=ff2c".
    std::string Text(bool bResult) const {
        const FtmOuts preset;
        std::ostringstream text;
        text << (bResult ? "true" : "false") << std::hex;
        const auto print = [&text](char cKind, const auto& values, const auto& before) {
            for (size_t i = 0; i < std::size(values); ++i)
                if (values[i] != before[i])
                    text << ' ' << cKind << i << '=' << +values[i];
        };
        print('b', b, preset.b);
        print('h', h, preset.h);
        print('s', s, preset.s);
        print('w', w, preset.w);
        return text.str();
    }
};

/// FtmOut represents an out-value among the arguments of a row's call; &h0 is a pointer to it.
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

/// A method and its arguments.
struct FtmCall {
    std::string sName;
    std::function<bool(Diag_FTM& diag, FtmOuts& outs)> run;
};
template <class Family, class... Parameters, class... Arguments>
FtmCall Do(const char* sName, bool (Family::*pMethod)(Parameters...), Arguments... arguments) {
    return {sName, [=](Diag_FTM& diag, FtmOuts& outs) { return (diag.*pMethod)(Bound(outs, arguments)...); }};
}
#define DO(METHOD, ...) Do(#METHOD, &Diag_FTM::METHOD __VA_OPT__(, ) __VA_ARGS__)

/// A command. Request and response are in hex, without the header. Response "": the phone returns the
/// request.
struct FtmRow {
    std::string sRequest;
    FtmCall call;
    std::string sAnswer = "";
    /// The out-values that the response changes, as in FtmOuts::Text.
    std::string sOuts = "";
    /// The log lines of operation and result. "-": none; "*": any; "": one line that begins with the method's
    /// name (for the result: only if out-values change).
    std::string sEntry = "";
    std::string sResult = "";
};
using FtmRows = std::vector<FtmRow>;
struct FtmTable {
    std::string sHeader;
    FtmRows rows;
    /// The outcome without a response.
    std::string sUnanswered = "false";
};

class FtmRowsTest : public PhoneTest {
protected:
    /// The out-values before each call.
    FtmOuts m_preset;

    FtmRowsTest() { m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 1000); }

    /// Returns the outcome of the call when every request gets that response.
    std::string Run(const FtmCall& call, const Bytes& answer) {
        m_log.Clear();
        m_phone.phone.ClearRequests();
        m_phone.Answer("", answer);
        m_outs = m_preset;
        const bool bResult = call.run(m_diag, m_outs);
        return m_outs.Text(bResult);
    }
    static Bytes GoodAnswer(const FtmRow& row, const std::string& sHeader) {
        return Hex(sHeader + " " + (row.sAnswer.empty() ? row.sRequest : row.sAnswer));
    }
    static std::string Good(const FtmRow& row) { return "true" + (row.sOuts.empty() ? "" : " " + row.sOuts); }

    /// Checks the requests, outcomes and log lines of every row, then the outcomes when the phone does not
    /// answer.
    void Check(const std::vector<FtmTable>& tables) {
        for (const FtmTable& table : tables)
            for (const FtmRow& row : table.rows) {
                EXPECT_EQ(Run(row.call, GoodAnswer(row, table.sHeader)), Good(row)) << row.sRequest;
                EXPECT_EQ(m_phone.Requests(), Lines{table.sHeader + " " + row.sRequest});
                CheckLines(LOG_FN, row, row.sEntry);
                CheckLines(LOG_RET, row, row.sResult.empty() && row.sOuts.empty() ? "-" : row.sResult);
            }
        m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 5);
        for (const FtmTable& table : tables)
            for (const FtmRow& row : table.rows)
                EXPECT_EQ(Run(row.call, Hex("13")), table.sUnanswered) << row.call.sName;
    }

private:
    /// Compares the log lines of a category (see FtmRow).
    void CheckLines(unsigned iCategory, const FtmRow& row, const std::string& sExpected) {
        std::string sLines;
        for (const std::string& sLine : m_log.Of(iCategory))
            sLines += (sLines.empty() ? "" : "\n") + sLine;
        const bool bBegins = sExpected.empty() && sLines.starts_with("QLIB_" + row.call.sName + "(");
        EXPECT_TRUE(bBegins || sExpected == "*" || sLines == (sExpected == "-" ? "" : sExpected)) << sLines;
    }

    FtmOuts m_outs;
};
