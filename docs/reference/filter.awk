# Shows a header to Doxygen: what headers say in plain comments becomes Doxygen's markup. Lines keep their numbers.
#   the comment at the top          describes the file
#   // --- Title ---                begins a section of a class
#   a remark after a member         describes the member
#   a comment that begins a list of declarations without blank lines describes all that it names ("A, B: ...",
#                                   "GET_..._LIST: ..."), and all of the same name
#   an indented list of arguments   becomes a list
#   what programs cannot use        is left out: protected members, constructors that need a part of the library,
#                                   deleted functions
# Everything belongs to the group of the header's folder.

function end_section() {
    if (in_section)
        printf "/** @} */ "
    in_section = 0
}

# The name of the function that a line declares; "" if it declares none.
function function_name(line) {
    if (line ~ /~|= delete|^ *(private|protected|public|friend|using|class|struct|enum|return|static_assert)/ || line !~ /[A-Za-z0-9_]+\(/)
        return ""
    sub(/\(.*/, "", line)
    sub(/.*[^A-Za-z0-9_]/, "", line)
    return line
}

# True when the comment names the function, perhaps with dots for a part of the name.
function comment_names(name,    words, count, i, pattern) {
    count = split(comment, words, /[^A-Za-z0-9_.]+/)
    for (i = 1; i <= count; ++i) {
        pattern = words[i]
        sub(/[.]$/, "", pattern)
        if (pattern !~ /[A-Za-z]/)
            continue
        gsub(/\.\.+/, ".*", pattern)
        if (name ~ ("^" pattern "$"))
            return 1
    }
    return 0
}

NR == 1 {
    folder = FILENAME
    if (!sub(/\/[^\/]*$/, "", folder))
        folder = ""
    sub(/.*\//, "", folder)
}

!past_top && /^\/\/ / { sub(/^\/\//, NR == 1 ? "/// @thisfile" : "///") }
!past_top && /^\/\/$/ { sub(/^/, "/") }
!past_top && /^\/\/\/    / { $0 = "///" } # a piece of code; the main page has one
/^#pragma once/ { past_top = 1 }
past_top && !in_group && /^$/ && folder != "" {
    $0 = "/** @addtogroup " folder " */ /** @{ */"
    in_group = 1
}

/^class .*[^;]$/ {
    scope = $0
    sub(/ (:|final).*/, "", scope)
    sub(/ \{.*/, "", scope)
    sub(/.* /, "", scope)
    scope = scope "::"
}
/^};/ { scope = "" }

/^ *\/\/ --- .* -+$/ {
    end_section()
    sub(/^ *\/\/ --- /, "")
    sub(/ -+$/, "")
    $0 = "/** @name " $0 " */ /** @{ */"
    in_section = 1
}
/^(private|protected|public):|^};/ { end_section() }
/^protected:/ { $0 = "private:" }
/^ +(explicit )?[A-Z][A-Za-z0-9]*\((CommandFrame|DiagConnection)& |= delete;/ { $0 = "/** @private */" $0 }

/[;,{(] +\/\/ / { sub(/ \/\/ /, " ///< ") }

/^ *\/\/\/   [A-Za-z]+  / {
    match($0, /\/\/\/   [A-Za-z]+ +/)
    name = substr($0, RSTART + 6, RLENGTH - 6)
    sub(/ +$/, "", name)
    $0 = substr($0, 1, RSTART + 2) " - `" name "`: " substr($0, RSTART + RLENGTH)
}

# `comment`: the comment of the list of declarations, "" outside of one; `margin`: its spaces; `first`: its first function.
/^ *\/\/\// {
    match($0, /^ */)
    margin = RLENGTH
    comment = (in_comment ? comment " " : "") $0
    in_comment = 1
    first = ""
    print
    next
}
/^$/ || /^ *\/\// { comment = "" }
{
    match($0, /^ */)
    if (comment != "" && RLENGTH == margin && (name = function_name($0)) != "") {
        if (first == "")
            first = name
        else if (name == first)
            printf "/** @overload */"
        else if (comment_names(name))
            printf "/** @copydoc %s%s */", scope, first
        else
            comment = ""
    }
    in_comment = 0
    print
}
END {
    if (in_group)
        print "/** @} */"
}
