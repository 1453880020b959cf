// Texts from the phone and the user in printable form, and help texts in columns.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tools {

/// Returns a text with its control characters, which a terminal would obey, replaced by \xNN.
std::string Printable(std::string_view text);

/// Returns Printable(text) in double quotes.
std::string Quoted(std::string_view text);

/// Returns true when the bytes are well-formed UTF-8.
bool IsUtf8(std::string_view text);

/// Returns the number of bytes of the UTF-8 character at `i`, 0 when it is not well-formed.
size_t CharacterLength(std::string_view text, size_t i);

/// Returns a text as a JSON string with its quotes. UTF-8 is kept. In a text that is not UTF-8, each byte
/// becomes the character with the same number. So the result is valid JSON whatever the phone sent, and no
/// byte is lost.
std::string JsonText(std::string_view text);

/// Returns the lines of a text.
std::vector<std::string> Lines(std::string_view text);

/// Returns an entry of a help text: `text` after `indent` blanks, and `explanation` in a second column, which
/// begins on a new line when `text` is too long.
std::string Aligned(const std::string& text, std::string_view explanation, size_t indent);

/// Returns paragraphs broken to the width of a terminal. Each line of `text` is a paragraph; empty lines may
/// separate them. Lines that begin with a blank are kept as they are.
std::string Wrapped(std::string_view text);

} // namespace tools
