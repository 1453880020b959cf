#include "link/format_expansion.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

constexpr size_t kMaxWidth = 100;
constexpr int kNoPrecision = -1;

bool IsIn(char c, const char* sSet) {
    return c != '\0' && std::strchr(sSet, c) != nullptr;
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Text that grows in a buffer and never exceeds it.
class Output {
public:
    explicit Output(std::span<char> out) : m_out(out.first(out.size() - 1)), m_pTerminator(out.data()) {}

    void Put(std::string_view text) {
        const size_t iCopied = text.copy(m_out.data() + m_iUsed, m_out.size() - m_iUsed);
        m_iUsed += iCopied;
    }
    void Fill(size_t iCount, char c) {
        for (; iCount > 0; --iCount)
            Put({&c, 1});
    }
    size_t Finish() {
        m_pTerminator[m_iUsed] = '\0';
        return m_iUsed;
    }

private:
    std::span<char> m_out;
    char* m_pTerminator;
    size_t m_iUsed = 0;
};

/// The remaining arguments.
class Arguments {
public:
    explicit Arguments(std::span<const DWORD> values) : m_values(values) {}

    /// Take fetches the next argument; false when there is none.
    bool Take(DWORD& iValue) {
        if (m_values.empty())
            return false;
        iValue = m_values.front();
        m_values = m_values.subspan(1);
        return true;
    }

private:
    std::span<const DWORD> m_values;
};

/// One conversion, between '%' and its letter.
struct Conversion {
    bool bLeft = false;
    bool bPlus = false;
    bool bBlank = false;
    bool bAlternate = false;
    bool bZero = false;
    size_t iWidth = 0;
    int iPrecision = kNoPrecision;
    char cLetter = '\0';
};

/// Reads a conversion from the text after its '%'; `s` ends after what was read.
class ConversionReader {
public:
    ConversionReader(const char* s, Arguments& arguments) : m_s(s), m_arguments(arguments) {}

    Conversion Read() {
        ReadFlags();
        ReadWidth();
        ReadPrecision();
        while (IsIn(*m_s, "hljztLq"))
            ++m_s;
        m_conversion.cLetter = *m_s;
        if (*m_s != '\0')
            ++m_s;
        return m_conversion;
    }
    const char* End() const { return m_s; }

private:
    void ReadFlags() {
        for (; IsIn(*m_s, "-+ #0"); ++m_s) {
            m_conversion.bLeft |= *m_s == '-';
            m_conversion.bPlus |= *m_s == '+';
            m_conversion.bBlank |= *m_s == ' ';
            m_conversion.bAlternate |= *m_s == '#';
            m_conversion.bZero |= *m_s == '0';
        }
    }

    /// Reads a number or '*', limited to kMaxWidth; only an argument can be negative.
    LONG ReadNumber() {
        if (*m_s == '*') {
            ++m_s;
            DWORD iValue = 0;
            m_arguments.Take(iValue);
            constexpr LONG kLimit = kMaxWidth;
            return std::clamp(static_cast<LONG>(iValue), -kLimit, kLimit);
        }
        size_t iNumber = 0;
        for (; IsDigit(*m_s); ++m_s)
            iNumber = std::min(iNumber * 10 + static_cast<size_t>(*m_s - '0'), kMaxWidth);
        return static_cast<LONG>(iNumber);
    }

    void ReadWidth() {
        const LONG iWidth = ReadNumber();
        m_conversion.bLeft |= iWidth < 0;
        m_conversion.iWidth = static_cast<size_t>(iWidth < 0 ? -iWidth : iWidth);
    }

    void ReadPrecision() {
        if (*m_s != '.')
            return;
        ++m_s;
        m_conversion.iPrecision = std::max<int>(static_cast<int>(ReadNumber()), kNoPrecision);
    }

    const char* m_s;
    Arguments& m_arguments;
    Conversion m_conversion;
};

/// Digits from the right without leading zeros; 0 has no digits.
class Digits {
public:
    Digits(DWORD iValue, unsigned iBase, const char* sDigits) {
        for (; iValue != 0; iValue /= iBase)
            m_aDigits[--m_iFirst] = sDigits[iValue % iBase];
    }
    std::string_view Text() const { return {m_aDigits + m_iFirst, kMost - m_iFirst}; }

private:
    static constexpr size_t kMost = 11; // 2^32 in octal
    char m_aDigits[kMost];
    size_t m_iFirst = kMost;
};

void PutPadded(const Conversion& conversion, std::string_view text, Output& output) {
    const size_t iPadding = conversion.iWidth - std::min(conversion.iWidth, text.size());
    output.Fill(conversion.bLeft ? 0 : iPadding, ' ');
    output.Put(text);
    output.Fill(conversion.bLeft ? iPadding : 0, ' ');
}

size_t LeastDigits(const Conversion& conversion) {
    return conversion.iPrecision == kNoPrecision ? 1 : static_cast<size_t>(conversion.iPrecision);
}

/// Writes sign or base prefix, zeros for precision or width, the digits, and blanks on either side.
void PutNumber(const Conversion& conversion, std::string_view prefix, std::string_view digits,
               Output& output) {
    const bool bPrecise = conversion.iPrecision != kNoPrecision;
    const size_t iLeastDigits = LeastDigits(conversion);
    size_t iZeros = iLeastDigits - std::min(iLeastDigits, digits.size());
    size_t iSize = prefix.size() + iZeros + digits.size();
    const size_t iMissing = conversion.iWidth - std::min(conversion.iWidth, iSize);
    if (conversion.bZero && !conversion.bLeft && !bPrecise) {
        iZeros += iMissing;
        iSize += iMissing;
    }
    const size_t iPadding = conversion.iWidth - std::min(conversion.iWidth, iSize);
    output.Fill(conversion.bLeft ? 0 : iPadding, ' ');
    output.Put(prefix);
    output.Fill(iZeros, '0');
    output.Put(digits);
    output.Fill(conversion.bLeft ? iPadding : 0, ' ');
}

void PutSigned(const Conversion& conversion, DWORD iValue, Output& output) {
    const bool bNegative = static_cast<LONG>(iValue) < 0;
    const Digits digits(bNegative ? 0u - iValue : iValue, 10, "0123456789");
    const char* sSign = bNegative ? "-" : conversion.bPlus ? "+" : conversion.bBlank ? " " : "";
    PutNumber(conversion, sSign, digits.Text(), output);
}

void PutHex(const Conversion& conversion, DWORD iValue, Output& output) {
    const bool bUpper = conversion.cLetter == 'X';
    const char* sPrefix = !conversion.bAlternate || iValue == 0 ? "" : bUpper ? "0X" : "0x";
    const Digits digits(iValue, 16, bUpper ? "0123456789ABCDEF" : "0123456789abcdef");
    PutNumber(conversion, sPrefix, digits.Text(), output);
}

void PutOctal(const Conversion& conversion, DWORD iValue, Output& output) {
    const Digits digits(iValue, 8, "01234567");
    // '#' guarantees a leading zero.
    const bool bLacksZero = conversion.bAlternate && LeastDigits(conversion) <= digits.Text().size();
    PutNumber(conversion, bLacksZero ? "0" : "", digits.Text(), output);
}

void PutCharacter(const Conversion& conversion, DWORD iValue, Output& output) {
    const char c = static_cast<char>(iValue);
    const bool bPrintable = c >= ' ' && c <= '~';
    PutPadded(conversion, bPrintable ? std::string_view(&c, 1) : ".", output);
}

/// Put expands one conversion; false when the conversion is to be copied to the output instead.
bool Put(const Conversion& conversion, Arguments& arguments, Output& output) {
    DWORD iValue = 0;
    if (conversion.cLetter == '%') {
        output.Put("%");
        return true;
    }
    if (!IsIn(conversion.cLetter, "diuxXocspnfFeEgGaA") || !arguments.Take(iValue))
        return false;
    switch (conversion.cLetter) {
        case 'd':
        case 'i':
            PutSigned(conversion, iValue, output);
            return true;
        case 'u':
            PutNumber(conversion, "", Digits(iValue, 10, "0123456789").Text(), output);
            return true;
        case 'x':
        case 'X':
            PutHex(conversion, iValue, output);
            return true;
        case 'o':
            PutOctal(conversion, iValue, output);
            return true;
        case 'c':
            PutCharacter(conversion, iValue, output);
            return true;
        default:
            return false;
    }
}

} // namespace

size_t ExpandFormat(const char* sFormat, std::span<const DWORD> arguments, std::span<char> out) {
    Output output(out);
    Arguments left(arguments);
    while (*sFormat != '\0') {
        const size_t iPlain = std::strcspn(sFormat, "%");
        output.Put({sFormat, iPlain});
        sFormat += iPlain;
        if (*sFormat == '\0')
            break;
        ConversionReader reader(sFormat + 1, left);
        const Conversion conversion = reader.Read();
        const auto iSize = static_cast<size_t>(reader.End() - sFormat);
        if (!Put(conversion, left, output))
            output.Put({sFormat, iSize});
        sFormat = reader.End();
    }
    return output.Finish();
}
