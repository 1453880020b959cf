// Texts of the phone, and texts that were typed, as they are printed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tools {

/// Printable returns a text with control characters, which a terminal would obey, as \xNN.
std::string Printable(std::string_view text);

/// Quoted is Printable in quotes.
std::string Quoted(std::string_view text);

/// IsUtf8 says whether the bytes are well-formed UTF-8.
bool IsUtf8(std::string_view text);

/// CharacterLength returns the number of bytes of the well-formed UTF-8 character at `i`, 0 when there is
/// none.
size_t CharacterLength(std::string_view text, size_t i);

/// JsonText returns a text as a JSON string with its quotes. UTF-8 is kept. In a text that is not UTF-8 each
/// byte becomes the character of the same number: the result is valid JSON whatever the phone sent, and no
/// byte is lost.
std::string JsonText(std::string_view text);

/// Lines returns the lines of a text.
std::vector<std::string> Lines(std::string_view text);

/// Aligned returns an entry of a help text: `text` after `indent` blanks, and its explanation in a second
/// column, on lines of its own where they need them.
std::string Aligned(const std::string& text, std::string_view explanation, size_t indent);

/// Wrapped returns paragraphs, which are lines of `text` with empty ones between them, broken to the width of
/// a terminal. Lines that begin with a blank are kept as they are.
std::string Wrapped(std::string_view text);

} // namespace tools
