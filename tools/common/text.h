// Texts of the phone, and texts that were typed, as they are printed.
#pragma once

#include <string>
#include <string_view>

namespace tools {

/// Printable gives a text with control characters, which a terminal would obey, as \xNN.
std::string Printable(std::string_view text);

/// Quoted is Printable in quotes.
std::string Quoted(std::string_view text);

/// IsUtf8 tells whether the bytes are well-formed UTF-8.
bool IsUtf8(std::string_view text);

/// JsonText gives a text as a JSON string with its quotes. UTF-8 stands for itself. Of a text that is not
/// UTF-8 each byte stands for the character of the same number, so that the result is sound JSON whatever the
/// phone says and no byte is lost.
std::string JsonText(std::string_view text);

/// Aligned gives a line of two columns for a help text.
std::string Aligned(std::string text, const char* explanation);

} // namespace tools
