#!/bin/bash
# read-service-conf.sh FILE...
#
# Prints two lines: the value of web_host and the value of ca_file in these service.conf files, of which a later one
# overrides an earlier one key by key. A line is empty when no file has a value for the key.
#
# The rules are those by which the program reads the files (docs/configuration.md): both have to read the same.
set -u
export LC_ALL=C PATH=/usr/sbin:/usr/bin:/sbin:/bin

largest=65536

# A plain file of text, and no link.
is_readable_text() {
    [ -f "$1" ] && [ ! -L "$1" ] && [ -r "$1" ] || return 1
    [ "$(stat -c %s "$1")" -le $largest ] || return 1
    [ "$(tr -cd '\0' <"$1" | wc -c)" = 0 ] || return 1
    iconv -f UTF-8 -t UTF-16 "$1" >/dev/null 2>&1
}

files=()
for file; do
    is_readable_text "$file" && files+=("$file")
done

awk '
    function trimmed(text) {
        gsub(/^[ \t\r\v\f]+|[ \t\r\v\f]+$/, "", text)
        return text
    }
    function is_number(text, largest) { return text ~ /^(0|[1-9][0-9]?[0-9]?[0-9]?[0-9]?)$/ && text + 0 <= largest }
    function is_name(text,    labels, count, i) {
        if (length(text) > 253) return 0
        count = split(text, labels, ".")
        for (i = 1; i <= count; i++) {
            if (length(labels[i]) > 63 || labels[i] !~ /^[a-z0-9]([a-z0-9-]*[a-z0-9])?$/) return 0
        }
        # What ends in a number is an address, and has only one way of writing.
        if (labels[count] !~ /^([0-9]+|0x[0-9a-f]*)$/) return count > 0
        for (i = 1; i <= count; i++) {
            if (!is_number(labels[i], 255)) return 0
        }
        return count == 4
    }
    function is_host(text,    colon) {
        colon = index(text, ":")
        if (!colon) return is_name(text)
        return is_name(substr(text, 1, colon - 1)) && substr(text, colon + 1) != "0" &&
            is_number(substr(text, colon + 1), 65535)
    }
    FNR == 1 { sub(/^\357\273\277/, "") }
    {
        sub(/#.*/, "")
        equals = index($0, "=")
        if (!equals) next
        key = trimmed(substr($0, 1, equals - 1))
        value = trimmed(substr($0, equals + 1))
        if (key == "web_host" && is_host(tolower(value))) host = tolower(value)
        if (key == "ca_file" && (value == "" || value ~ /^\//)) authority = value
    }
    END { print host; print authority }' ${files[@]+"${files[@]}"} </dev/null
