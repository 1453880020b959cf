// Text commands for a simulated handset.
#include "handset/console.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "handset/file_system.h"
#include "handset/fill.h"
#include "handset/handset.h"
#include "handset/unsolicited.h"

namespace handset {
namespace {

constexpr unsigned long kMaxNumber = 0xFFFFFFFF;
constexpr unsigned long kMaxCount = 1000000;
constexpr const char* kNotWanted = "not sent: the client's masks do not let it through";

const char* KindName(Kind kind) {
    return kind == Kind::Folder ? "folder" : kind == Kind::Link ? "link" : "file";
}

/// Escapes control characters and backslashes as \xHH, so that an entry stays on its line.
std::string Printable(const std::string& name) {
    std::string text;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7F && c != '\\') {
            text += c;
            continue;
        }
        char code[8];
        std::snprintf(code, sizeof code, "\\x%02X", byte);
        text += code;
    }
    return text;
}

/// Splits a line at the first space into a number (decimal, or hex with "0x") and the rest.
bool TakeNumber(const std::string& line, unsigned long limit, unsigned long& number, std::string& rest) {
    const size_t space = std::min(line.find(' '), line.size());
    rest = line.substr(std::min(space + 1, line.size()));
    return ParseNumber(line.substr(0, space), 0, limit, number);
}

/// Applies one "key=value" of a misbehave command. Returns the reason of an error, or "".
std::string SetOption(const std::string& word, Misbehaviour& rule) {
    const size_t sign = word.find('=');
    const std::string key = word.substr(0, sign);
    const std::string text = sign == std::string::npos ? "" : word.substr(sign + 1);
    Bytes bytes;
    unsigned long number = 0;
    if (key == "prefix" && FromHex(text, bytes))
        rule.prefix = bytes;
    else if (key == "packet" && FromHex(text, bytes))
        rule.packets.push_back(bytes);
    else if (key == "skip" && ParseNumber(text, 10, kMaxCount, number))
        rule.skip = static_cast<int>(number);
    else if (key == "times" && text == "-1")
        rule.times = -1;
    else if (key == "times" && ParseNumber(text, 10, kMaxCount, number))
        rule.times = static_cast<int>(number);
    else if (key == "value" && ParseNumber(text, 0, kMaxNumber, number))
        rule.value = static_cast<uint32_t>(number);
    else
        return "cannot understand " + word;
    return "";
}

} // namespace

bool ParseNumber(const std::string& text, int base, unsigned long limit, unsigned long& value) {
    char* end = nullptr;
    errno = 0;
    value = std::strtoul(text.c_str(), &end, base);
    return !text.empty() && text.front() != '-' && *end == 0 && errno == 0 && value <= limit;
}

struct Console::Command {
    const char* word;
    const char* usage;
    std::string (Console::*run)(const std::string& rest, std::string& answer);
};

std::span<const Console::Command> Console::Commands() {
    static const Command commands[] = {
        {.word = "unplug", .usage = "unplug", .run = &Console::Unplug},
        {.word = "replug", .usage = "replug", .run = &Console::Replug},
        {.word = "list", .usage = "list [PATH]", .run = &Console::List},
        {.word = "cat", .usage = "cat PATH", .run = &Console::Cat},
        {.word = "export", .usage = "export PATH LOCAL", .run = &Console::ExportTo},
        {.word = "requests", .usage = "requests", .run = &Console::Requests},
        {.word = "clear-requests", .usage = "clear-requests", .run = &Console::ClearRequests},
        {.word = "misbehave",
         .usage = "misbehave ACTION [prefix=HEX] [skip=N] [times=N] [value=N] [packet=HEX ...]",
         .run = &Console::Misbehave},
        {.word = "behave", .usage = "behave", .run = &Console::Behave},
        {.word = "latency", .usage = "latency MICROSECONDS", .run = &Console::Latency},
        {.word = "chatter", .usage = "chatter COUNT", .run = &Console::Chatter},
        {.word = "data-mode", .usage = "data-mode on|off", .run = &Console::DataMode},
        {.word = "send", .usage = "send HEX", .run = &Console::Send},
        {.word = "log", .usage = "log CODE [HEX]", .run = &Console::EmitLog},
        {.word = "message", .usage = "message SUBSYSTEM TEXT", .run = &Console::EmitMessage},
        {.word = "event", .usage = "event ID [HEX]", .run = &Console::EmitEvent},
        {.word = "quit", .usage = "quit", .run = &Console::Quit},
    };
    return commands;
}

const Console::Command* Console::Find(const std::string& word) {
    for (const Command& command : Commands())
        if (word == command.word)
            return &command;
    return nullptr;
}

std::string Console::Help() {
    std::string text;
    for (const Command& command : Commands())
        text += std::string("  ") + command.usage + "\n";
    return text;
}

std::string Console::Run(const std::string& line) {
    const size_t begin = line.find_first_not_of(" \t\r");
    if (begin == std::string::npos)
        return "";
    const size_t end = line.find_last_not_of(" \t\r") + 1;
    const size_t space = std::min(line.find(' ', begin), end);
    const Command* command = Find(line.substr(begin, space - begin));
    if (command == nullptr)
        return "error: unknown command\n";
    const size_t rest = line.find_first_not_of(' ', space);
    std::string answer;
    const std::string problem =
        (this->*command->run)(rest < end ? line.substr(rest, end - rest) : "", answer);
    return problem.empty() ? answer + "ok\n" : "error: " + problem + "\n";
}

std::string Console::Unplug(const std::string&, std::string&) {
    m_handset.Unplug();
    return "";
}

std::string Console::Replug(const std::string&, std::string& answer) {
    m_handset.Replug();
    answer = m_handset.TtyPath() + "\n";
    return "";
}

std::string Console::List(const std::string& rest, std::string& answer) {
    m_handset.WithFiles([&](FileSystem& files) {
        for (const Listed& entry : files.List(rest))
            answer += Printable(entry.path) + "\t" + KindName(entry.kind) + "\t" +
                      std::to_string(entry.size) + "\n";
    });
    return "";
}

std::string Console::Cat(const std::string& rest, std::string& answer) {
    std::optional<Bytes> content;
    m_handset.WithFiles([&](FileSystem& files) { content = files.Content(rest); });
    if (!content)
        return "no such file";
    answer = ToHex(*content) + "\n";
    return "";
}

std::string Console::ExportTo(const std::string& rest, std::string&) {
    const size_t space = rest.rfind(' ');
    if (space == std::string::npos)
        return "usage: export PATH LOCAL";
    const std::string path = rest.substr(0, rest.find_last_not_of(' ', space) + 1);
    std::string problem;
    m_handset.WithFiles([&](FileSystem& files) { problem = Export(files, path, rest.substr(space + 1)); });
    return problem;
}

std::string Console::Requests(const std::string&, std::string& answer) {
    for (const Bytes& request : m_handset.Requests())
        answer += ToHex(request) + "\n";
    return "";
}

std::string Console::ClearRequests(const std::string&, std::string&) {
    m_handset.ClearRequests();
    return "";
}

std::string Console::Misbehave(const std::string& rest, std::string&) {
    std::istringstream words(rest);
    std::string word;
    words >> word;
    const std::optional<Misbehaviour::Action> action = ActionByName(word);
    if (!action)
        return "unknown action";
    Misbehaviour rule;
    rule.action = *action;
    while (words >> word) {
        std::string problem = SetOption(word, rule);
        if (!problem.empty())
            return problem;
    }
    m_handset.Misbehave(rule);
    return "";
}

std::string Console::Behave(const std::string&, std::string&) {
    m_handset.Behave();
    return "";
}

std::string Console::Latency(const std::string& rest, std::string&) {
    unsigned long microseconds = 0;
    if (!ParseNumber(rest, 10, kMaxNumber, microseconds))
        return "usage: latency MICROSECONDS";
    m_handset.SetLatency(std::chrono::microseconds(microseconds));
    return "";
}

std::string Console::Chatter(const std::string& rest, std::string&) {
    unsigned long count = 0;
    if (!ParseNumber(rest, 10, kMaxCount, count))
        return "usage: chatter COUNT";
    m_handset.SetChatter(static_cast<int>(count));
    return "";
}

std::string Console::DataMode(const std::string& rest, std::string&) {
    if (rest != "on" && rest != "off")
        return "usage: data-mode on|off";
    m_handset.SetDataMode(rest == "on");
    return "";
}

std::string Console::Send(const std::string& rest, std::string&) {
    Bytes packet;
    if (!FromHex(rest, packet))
        return "usage: send HEX";
    m_handset.Send(packet);
    return "";
}

std::string Console::EmitLog(const std::string& rest, std::string&) {
    unsigned long code = 0;
    std::string tail;
    Bytes payload;
    if (!TakeNumber(rest, 0xFFFF, code, tail) || !FromHex(tail, payload))
        return "usage: log CODE [HEX]";
    return m_handset.EmitLog(static_cast<uint16_t>(code), payload) ? "" : kNotWanted;
}

std::string Console::EmitMessage(const std::string& rest, std::string&) {
    unsigned long subsystem = 0;
    std::string text;
    if (!TakeNumber(rest, 0xFFFF, subsystem, text))
        return "usage: message SUBSYSTEM TEXT";
    Message message;
    message.subsystem = static_cast<uint16_t>(subsystem);
    message.format = text;
    return m_handset.EmitMessage(message) ? "" : kNotWanted;
}

std::string Console::EmitEvent(const std::string& rest, std::string&) {
    unsigned long id = 0;
    std::string tail;
    Bytes payload;
    if (!TakeNumber(rest, 0xFFFF, id, tail) || !FromHex(tail, payload))
        return "usage: event ID [HEX]";
    return m_handset.EmitEvent(static_cast<uint16_t>(id), payload) ? "" : kNotWanted;
}

std::string Console::Quit(const std::string&, std::string&) {
    m_quit = true;
    return "";
}

} // namespace handset
