#!/bin/bash
# extractip.sh CONFIGURATION
#
# Prints the public IPv4 address that the outside sees, with a line feed, and ends within about three
# seconds whatever the network does. The service's web host is asked; when it gives nothing usable, the
# numeric "remote" address of the OpenVPN configuration stands in. Exit status 1: neither was to be had.
# Runs as the plain user; the service's host and an extra CA come from service.conf (see below).
set -u
export LC_ALL=C PATH=/usr/sbin:/usr/bin:/sbin:/bin

config=${1-}
here=$(cd "$(dirname "$0")" && pwd) || exit 1
defaults=$here/service.conf
overrides=/etc/quorvane/service.conf

octet='(25[0-5]|2[0-4][0-9]|1[0-9][0-9]|[1-9]?[0-9])'
address="^$octet\\.$octet\\.$octet\\.$octet\$"

# The last "key = value" line wins, so the override file is read after the built-in defaults.
setting() {
    local files=() file
    for file in "$defaults" "$overrides"; do
        [ -r "$file" ] && files+=("$file")
    done
    [ ${#files[@]} -gt 0 ] || return 0
    awk -v wanted="$1" '
        /^[ \t]*#/ { next }
        {
            at = index($0, "=")
            if (!at) next
            key = substr($0, 1, at - 1)
            value = substr($0, at + 1)
            gsub(/^[ \t]+|[ \t\r]+$/, "", key)
            sub(/[ \t]+#.*$/, "", value)
            gsub(/^[ \t]+|[ \t\r]+$/, "", value)
            if (key == wanted) found = value
        }
        END { print found }' "${files[@]}"
}

host=$(setting web_host)
ca=$(setting ca_file)
trusted=()
[ -n "$ca" ] && trusted=(--cacert "$ca" --capath /etc/ssl/certs)

# No user configuration (-q has to come first), no proxy, no IPv6: the question must go where the tunnel
# goes. "timeout" covers what curl's own limit does not, a resolver thread that will not end.
ask() {
    timeout -k 0.2 1.3 curl -q -fsS -4 --noproxy '*' --proto '=https' ${trusted[@]+"${trusted[@]}"} \
        -H 'Accept: text/plain' --connect-timeout 1.1 -m 1.2 --max-filesize 64 -- "https://$host/ip" 2>/dev/null |
        head -c 64 | tr -d '\0\r\n\t '
}

if [ -n "$host" ]; then
    for _ in 1 2; do
        found=$(ask)
        if [[ $found =~ $address ]]; then
            printf '%s\n' "$found"
            exit 0
        fi
    done
fi

[ -r "$config" ] && [ -f "$config" ] || exit 1
found=$(awk '$1 == "remote" { sub(/\r$/, "", $2); print $2; exit }' "$config" 2>/dev/null)
[[ $found =~ $address ]] || exit 1
printf '%s\n' "$found"
