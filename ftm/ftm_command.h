// What the factory-test commands share: how a request begins, how it is filled, logged and its answer taken.
#pragma once

#include <tuple>
#include <type_traits>

#include "diag/command_frame.h"

/// A factory-test command is a few lines: it logs its entry line, begins a request (with BeginFtm, or with
/// one of CommandFrame's Format functions where the family has a header of its own), appends its fields,
/// sends, and takes its values. What a command takes out of an answer it has mostly sent as placeholders too,
/// filled with the caller's values, because the handset answers in the request's layout.
///
/// Out-values change only when an answer came that its send variant accepts and that goes on after its
/// header. They are taken from the answer's end; how far back that reaches is not looked at, so in an answer
/// that stops between its values the last bytes that there are pass for them. A value for which there are
/// some bytes but too few stays as it was and makes the result false; where none are left, taking begins at
/// the answer's end once more. The result line is logged all the same.

/// LogText is the format of a log line that shows these values, each with a %d of its own. A text with
/// another number of them, or with any other %, does not compile.
template <class... Values>
struct LogText {
    // NOLINTNEXTLINE(google-explicit-constructor): a literal stands for it.
    consteval LogText(const char* sLiteral) : sFormat(sLiteral) {
        size_t iShown = 0;
        for (const char* p = sLiteral; *p != '\0'; ++p)
            if (*p == '%' && (++iShown, *++p) != 'd')
                throw "only %d can be shown";
        if (iShown != sizeof...(Values))
            throw "a line shows each of its values once";
    }

    const char* sFormat;
};

/// TextFor is the LogText of a call's values; the values alone decide which one.
template <class... Values>
using TextFor = std::type_identity_t<LogText<Values...>>;

/// LogLine writes a line with the values, 32-bit ones as signed.
template <class... Values>
void LogLine(CommandFrame& frame, LogCategory eCategory, TextFor<Values...> text, Values... values) {
    if constexpr (sizeof...(Values) == 0)
        frame.Log().LogMessage(eCategory, "%s", text.sFormat);
    else
        frame.Log().LogMessage(eCategory, text.sFormat, static_cast<int>(values)...);
}

/// AppendFields appends each value in the width of its type.
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

/// AppendLogged logs the entry line of a command that shows all its fields, and appends them to its request.
template <class... Fields>
RequestBuilder& AppendLogged(CommandFrame& frame, RequestBuilder& request, TextFor<Fields...> entry,
                             Fields... fields) {
    LogLine(frame, LOG_FN, entry, fields...);
    return AppendFields(request, fields...);
}

/// TakeValues takes values from the end of the answer; the arguments stand in the order of the layout, so the
/// last one is taken first. It stops with false at the first one that is not there; those behind it stay
/// written.
inline bool TakeValues(CommandFrame&) {
    return true;
}
template <class First, class... Rest>
bool TakeValues(CommandFrame& frame, First& first, Rest&... rest) {
    return TakeValues(frame, rest...) && frame.Response().Take(first);
}

/// TakeLogged is TakeValues and the result line, which shows `shown` and then the values.
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

/// BeginFtm begins a request of an RF command: FTM header for the current command type and system mode, then
/// the command's id, which stands in the method that is named after the command and nowhere else.
RequestBuilder& BeginFtm(CommandFrame& frame, unsigned short iCommandId);

/// SendFtm exchanges an RF command whose fields are what its entry line shows. True when it was answered as
/// SendFtmCmd wants it; the values, if any, are still to be taken.
template <class... Fields>
bool SendFtm(CommandFrame& frame, unsigned short iCommandId, TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, BeginFtm(frame, iCommandId), entry, fields...);
    return frame.SendFtmCmd();
}
