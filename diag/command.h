// The steps of a command, one line each: log, build, exchange, take the values.
#pragma once

#include <cstddef>
#include <tuple>
#include <type_traits>

#include "diag/command_frame.h"
#include "link/text_log.h"

/// A command of any family has these steps: log the entry line (LogLine, or AppendLogged when the line shows
/// exactly the request's fields), begin the request, append its fields, exchange it, take its values, log the
/// result (TakeLogged does both). The exchanges to choose from:
///
/// - CommandFrame::Send: general commands. The response begins with the request's first byte.
/// - CommandFrame::SendFtmCmd and its variants: FTM commands, whose responses repeat more of the header.
/// - Efs2Exchange (efs2/exchange.h): EFS2 requests that are retried or must not use the buffer pair.
/// - DelayedResponses: commands whose result arrives later, in packets of its own.

/// Conversion classifies a conversion of a log format, and the value that it shows.
enum class Conversion { Number, Text, Fraction, Address };

template <class Value>
constexpr Conversion ConversionOf() {
    if constexpr (std::is_floating_point_v<Value>)
        return Conversion::Fraction;
    else if constexpr (std::is_same_v<Value, const char*> || std::is_same_v<Value, char*>)
        return Conversion::Text;
    else if constexpr (std::is_pointer_v<Value>)
        return Conversion::Address;
    else
        return Conversion::Number;
}

/// LogText is the format of a log line that shows these values: %d, %u, %c or %X for a number, %s for a text,
/// %f for a fraction, %p for an address, with optional widths. A format that does not match its values does
/// not compile.
template <class... Values>
struct LogText {
    // NOLINTNEXTLINE(google-explicit-constructor): callers pass a literal.
    consteval LogText(const char* sLiteral) : sFormat(sLiteral) {
        constexpr Conversion aWanted[] = {ConversionOf<Values>()..., Conversion::Number};
        size_t iShown = 0;
        for (const char* p = sLiteral; *p != '\0'; ++p) {
            if (*p != '%' || *++p == '%')
                continue;
            if (iShown == sizeof...(Values) || KindOf(p) != aWanted[iShown])
                throw "a conversion does not fit its value";
            ++iShown;
        }
        if (iShown != sizeof...(Values))
            throw "a line shows each of its values once";
    }

    const char* sFormat;

private:
    // Moves p to the conversion's letter.
    static consteval Conversion KindOf(const char*& p) {
        while (*p == '0' || *p == '.' || (*p >= '1' && *p <= '9'))
            ++p;
        switch (*p) {
            case 'd':
            case 'u':
            case 'c':
            case 'x':
            case 'X':
                return Conversion::Number;
            case 's':
                return Conversion::Text;
            case 'f':
                return Conversion::Fraction;
            case 'p':
                return Conversion::Address;
            default:
                throw "unknown conversion";
        }
    }
};

/// TextFor is the LogText for a call's values. Only the values take part in template deduction.
template <class... Values>
using TextFor = std::type_identity_t<LogText<Values...>>;

/// LogLine writes a line with the values. Numbers are passed as 32-bit integers. Texts may come from outside.
template <class... Values>
void LogLine(DataLogFileHandler& log, LogCategory eCategory, TextFor<Values...> text, Values... values) {
    [[maybe_unused]] const auto shown = [](auto value) {
        if constexpr (ConversionOf<decltype(value)>() == Conversion::Number)
            return static_cast<int>(value);
        else
            return value;
    };
    if constexpr (sizeof...(Values) == 0)
        log.LogMessage(eCategory, "%s", text.sFormat);
    else
        log.LogMessage(eCategory, text.sFormat, shown(values)...);
}
template <class... Values>
void LogLine(CommandFrame& frame, LogCategory eCategory, TextFor<Values...> text, Values... values) {
    LogLine(frame.Log(), eCategory, text, values...);
}

/// AppendFields appends each value at the width of its type.
template <class... Fields>
RequestBuilder& AppendFields(RequestBuilder& request, Fields... fields) {
    [[maybe_unused]] const auto append = [&request]<class Field>(Field iField) {
        static_assert(sizeof(Field) == 1 || sizeof(Field) == 2 || sizeof(Field) == 4);
        if constexpr (sizeof(Field) == 1)
            request.U8(static_cast<unsigned char>(iField));
        else if constexpr (sizeof(Field) == 2)
            request.U16(static_cast<unsigned short>(iField));
        else
            request.U32(static_cast<DWORD>(iField));
    };
    (append(fields), ...);
    return request;
}

/// AppendLogged is for a command whose entry line shows all its fields: it logs the line and appends the
/// fields.
template <class... Fields>
RequestBuilder& AppendLogged(CommandFrame& frame, RequestBuilder& request, TextFor<Fields...> entry,
                             Fields... fields) {
    LogLine(frame, LOG_FN, entry, fields...);
    return AppendFields(request, fields...);
}

/// TakeValues takes values from the end of the response. The arguments are in wire order, so the last one is
/// taken first. Stops with false at the first value that cannot be taken; values after it in wire order have
/// been written by then.
inline bool TakeValues(CommandFrame&) {
    return true;
}
template <class First, class... Rest>
bool TakeValues(CommandFrame& frame, First& first, Rest&... rest) {
    return TakeValues(frame, rest...) && frame.Response().Take(first);
}

/// TakeLogged is TakeValues followed by the result line, which shows `shown` and then the values.
template <class... Shown, class... Values>
bool TakeLogged(CommandFrame& frame, TextFor<Shown..., Values...> result, std::tuple<Shown...> shown,
                Values&... values) {
    const bool bTaken = TakeValues(frame, values...);
    std::apply([&](auto... inputs) { LogLine(frame, LOG_RET, result, inputs..., values...); }, shown);
    return bTaken;
}
template <class... Values>
bool TakeLogged(CommandFrame& frame, TextFor<Values...> result, Values&... values) {
    return TakeLogged(frame, result, std::tuple<>(), values...);
}
