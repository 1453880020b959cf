// Generates the manual page in the macro language of man(7).
#include <algorithm>
#include <cctype>

#include "common/documents.h"
#include "common/text.h"

namespace tools {
namespace {

/// Escapes a text so that nothing in it is read as a request or an escape sequence.
std::string Plain(const std::string& text) {
    std::string result = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
    for (const char c : text) {
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-";
        else
            result += c;
    }
    return result;
}

/// Formats paragraphs in the form that Wrapped reads.
std::string Paragraphs(const std::string& text) {
    std::string page;
    bool isKept = false; // within lines that are not filled
    for (const std::string& line : Lines(text)) {
        const bool keeps = line.starts_with(' ');
        if (keeps != isKept)
            page += keeps ? ".PP\n.nf\n" : ".fi\n";
        isKept = keeps;
        page += line.empty() ? ".PP\n" : Plain(line) + "\n";
    }
    return isKept ? page + ".fi\n" : page;
}

std::string Tagged(const std::string& tag, const std::string& text) {
    return ".TP\n.B " + Plain(tag) + "\n" + Plain(text) + "\n";
}

std::string OptionItems(const std::vector<Option>& options) {
    std::string page;
    for (const Option& option : options)
        page += Tagged(FullName(option), option.purpose);
    return page;
}

std::string CommandItem(const Command& command) {
    std::string page = Tagged(FullName(command), command.purpose);
    if (!command.options.empty() || *command.details || *command.aliases)
        page += ".RS\n" + OptionItems(command.options);
    else
        return page;
    if (*command.details)
        page += ".PP\n" + Paragraphs(command.details);
    if (*command.aliases)
        page += ".PP\nOther names: " + Plain(command.aliases) + "\n";
    return page + ".RE\n";
}

} // namespace

std::string ManualPage(const Program& program) {
    std::string title = program.name;
    std::ranges::transform(title, title.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    std::string page = ".TH \"" + Plain(title) + "\" 1 \"\" \"quillet " + Version() + "\"\n.SH NAME\n" +
                       Plain(program.name) + " \\- " + Plain(program.purpose) + "\n.SH SYNOPSIS\n.B " +
                       Plain(program.name) + "\n[OPTIONS]";
    if (!program.commands.empty())
        page += program.withoutCommand ? " [COMMAND ...]" : " COMMAND ...";
    page += "\n.SH DESCRIPTION\n" + Paragraphs(program.remarks);
    if (!program.commands.empty())
        page += ".SH COMMANDS\n";
    for (const Command& command : program.commands)
        page += CommandItem(command);
    return page + ".SH OPTIONS\n" + OptionItems(program.options) + OptionItems(StandardOptions()) +
           ".SH EXIT STATUS\n" + Paragraphs(ExitStatusText(program));
}

} // namespace tools
