// Generates the completion script for bash. The script needs only bash and timeout(1).
#include <algorithm>
#include <cctype>

#include "common/documents.h"

namespace tools {
namespace {

/// Returns the letter for a kind of word in the script.
char LetterOf(Word word) {
    return word == Word::LocalPath ? 'l' : word == Word::PhonePath ? 'p' : '-';
}

std::string LettersOf(const std::vector<Word>& words) {
    std::string letters;
    for (const Word word : words)
        letters += LetterOf(word);
    return letters.empty() ? "-" : letters;
}

std::string Names(const std::vector<Option>& options) {
    std::string names;
    for (const Option& option : options)
        names += std::string(names.empty() ? "" : " ") + option.name;
    return names;
}

/// Returns the script's cases for options with values: their names, and the kind of the value.
std::string ValueCases(const std::vector<Option>& options) {
    std::string text;
    for (const Option& option : options) {
        if (!option.value)
            continue;
        std::string names = option.name;
        for (const char* letter = option.letters; *letter; ++letter)
            names += std::string("|-") + *letter;
        text += "        " + names + ") values='" + option.choices + "' kind=" + LetterOf(option.word) +
                (option.isListers ? " passed=1 ;;\n" : " ;;\n");
    }
    return text;
}

std::string CommandCases(const Program& program) {
    std::string text;
    for (const Command& command : program.commands) {
        std::string names = "'" + std::string(command.name) + "'";
        std::string aliases = command.aliases;
        for (char& c : aliases)
            c = c == ' ' ? '|' : c;
        if (!aliases.empty())
            names += "|" + aliases;
        text += "        " + names + ") options='" + Names(command.options) +
                "' kinds=" + LettersOf(command.words) + " ;;\n";
    }
    return text;
}

/// Returns the first words of the commands, each once.
std::string FirstWords(const Program& program) {
    std::string words = " ";
    for (const Command& command : program.commands) {
        const std::string name = command.name;
        const std::string first = name.substr(0, name.find(' '));
        if (words.find(" " + first + " ") == std::string::npos)
            words += first + " ";
    }
    return words;
}

/// Returns the script's cases for commands of two words: the second words after each first one.
std::string SecondWordCases(const Program& program) {
    std::string text;
    std::string done = " ";
    for (const Command& command : program.commands) {
        const std::string name = command.name;
        const std::string first = name.substr(0, name.find(' '));
        if (name == first || done.find(" " + first + " ") != std::string::npos)
            continue;
        done += first + " ";
        std::string words;
        for (const Command& other : program.commands)
            if (const std::string text_ = other.name; text_.starts_with(first + " "))
                words += " " + text_.substr(first.size() + 1);
        text += "        " + first + ") words='" + words.substr(1) + "' ;;\n";
    }
    return text;
}

constexpr const char* kPhonePaths = R"(
# Completes paths on the phone, unless listing the folder takes longer than 200 ms.
@F@_phone_paths() {
    local cur=$1 folder= name
    cur=${cur#[\"\']}
    cur=${cur//\\/}
    [[ $cur == */* ]] && folder=${cur%/*}/
    COMPREPLY=()
    while IFS= read -r -d '' name; do
        [[ $name != *[[:cntrl:]]* && $folder$name == "$cur"* ]] && COMPREPLY+=("$folder$name")
    done < <(timeout 0.2 "$program" "${passedOn[@]}" @LISTER@ "${folder:-/}" 2> /dev/null < /dev/null)
    compopt -o filenames 2> /dev/null
    [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == */ ]] && compopt -o nospace 2> /dev/null
}
)";

constexpr const char* kScript = R"(
@F@() {
    local cur=${COMP_WORDS[COMP_CWORD]} program=${COMP_WORDS[0]} word command= words= options= kinds=-
    local values= kind= passed= place=0 i passedOn=()
    # Find the command, and the position of the argument that is being typed.
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]} values= kind= passed=
        case $word in
@VALUES@        esac
        if [[ $kind ]]; then
            [[ $passed && i+1 -lt COMP_CWORD ]] && passedOn+=("$word" "${COMP_WORDS[i + 1]}")
            ((++i))
        elif [[ $word == -?* ]]; then
            :
        elif [[ ! $command ]]; then
            command=$word words=
            case $word in
@SECOND@            esac
        elif [[ $words ]]; then
            command+=" $word" words=
        else
            ((++place))
        fi
        [[ i -lt COMP_CWORD ]] && values= kind=
    done
    case $command in
@COMMANDS@    esac
    COMPREPLY=()
    if [[ ! $kind && $cur == -* ]]; then
        COMPREPLY=($(compgen -W "$options @OPTIONS@" -- "$cur"))
    elif [[ $values ]]; then
        COMPREPLY=($(compgen -W "$values" -- "$cur"))
    elif [[ ! $kind && ( ! $command || $words ) ]]; then
        COMPREPLY=($(compgen -W "${words:-@FIRST@}" -- "$cur"))
    else
        [[ $kind ]] || kind=${kinds:place < ${#kinds} ? place : ${#kinds} - 1:1}
        case $kind in
        l) mapfile -t COMPREPLY < <(compgen -f -- "$cur") && compopt -o filenames 2> /dev/null ;;
        p) @F@_phone_paths "$cur" ;;
        esac
    fi
}
complete -F @F@ @NAME@
)";

void Replace(std::string& text, const std::string& mark, const std::string& by) {
    for (size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + by.size()))
        text.replace(at, mark.size(), by);
}

std::vector<Option> OptionsWithValues(const Program& program) {
    std::vector<Option> all = program.options;
    for (const Command& command : program.commands)
        for (const Option& option : command.options)
            if (option.value && std::ranges::find(all, option.name, &Option::name) == all.end())
                all.push_back(option);
    return all;
}

} // namespace

std::string BashCompletion(const Program& program) {
    std::string function = "_" + std::string(program.name);
    std::ranges::replace(function, '-', '_');
    std::string text = "# Completion for bash, printed by " + std::string(program.name) + " --completion.\n";
    if (*program.lister)
        text += kPhonePaths;
    text += kScript;
    if (!*program.lister)
        Replace(text, "        p) @F@_phone_paths \"$cur\" ;;\n", "");
    Replace(text, "@VALUES@", ValueCases(OptionsWithValues(program)));
    Replace(text, "@SECOND@", SecondWordCases(program));
    Replace(text, "@COMMANDS@", CommandCases(program));
    Replace(text, "@OPTIONS@", Names(program.options) + " " + Names(StandardOptions()));
    Replace(text, "@FIRST@", program.commands.empty() ? "" : FirstWords(program));
    Replace(text, "@LISTER@", program.lister);
    Replace(text, "@NAME@", program.name);
    Replace(text, "@F@", function);
    return text;
}

} // namespace tools
