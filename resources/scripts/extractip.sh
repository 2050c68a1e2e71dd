#!/bin/bash
# extractip.sh CONFIGURATION
#
# Prints the public IPv4 address under which the tunnel of this OpenVPN configuration reaches the Internet, with a
# line feed. Exit status 1 without output: there is no such tunnel, or no address was received through it.
# Ends within about four and a half seconds whatever the network does. Runs as the plain user; the service's web
# host and an extra CA come from service.conf (see below).
#
# The real address must never be printed, so every request goes through the tunnel:
# - The tunnel is the tun device that carries all traffic (both halves of the IPv4 address space, or the default
#   route), while the configuration's own server is reached beside it. A tun device that carries less, or one
#   through which the server would be reached, belongs to another program.
# - The request is bound to that device, not to an address (SO_BINDTODEVICE, for plain users since Linux 5.7), so
#   it cannot change to another device when the tunnel ends meanwhile. Then it fails.
# - The web host's name is looked up in /etc/hosts, or else queried directly from the two resolvers below, after a
#   check that the route to each goes through the tunnel: the machine's own resolver may send its queries
#   elsewhere. curl receives the address and queries no resolver.
# - No other source is used. The configuration's "remote" is the tunnel's end, not the address seen from outside,
#   and nothing here can check whether that is the user's real address.
set -u
export LC_ALL=C PATH=/usr/sbin:/usr/bin:/sbin:/bin

config=${1-}
here=$(cd "$(dirname "$0")" && pwd) || exit 1
defaults=$here/service.conf
overrides=/etc/quorvane/service.conf
resolvers=(8.8.8.8 8.8.4.4)
no_hardware=65534 # ARPHRD_NONE

octet='(25[0-5]|2[0-4][0-9]|1[0-9][0-9]|[1-9]?[0-9])'
address="^$octet\\.$octet\\.$octet\\.$octet\$"

# Not the time of day: the clock may be corrected at this moment, because the network is available again.
milliseconds() {
    local since_boot
    read -r since_boot _ </proc/uptime
    echo "$((10#${since_boot/./} * 10))"
}
started=$(milliseconds)
# For all requests together. The user waits for the result, so not more; but four requests and answers over a
# satellite (a name, a connection, its keys, the address) take three seconds.
maximum_milliseconds=4500

left() { echo "$((maximum_milliseconds - $(milliseconds) + started))"; }

# --- the tunnel

device_in() { sed -n '1s/.* dev \([^ ]*\).*/\1/p'; }
carrier_of() { ip -4 -o route show exact "$1" 2>/dev/null | device_in; }
route_to() { ip -4 -o route get "$1" 2>/dev/null | device_in; }

# The tun device that carries all traffic.
carrying_tunnel() {
    local device
    device=$(carrier_of 0.0.0.0/1)
    if [ -n "$device" ]; then
        [ "$(carrier_of 128.0.0.0/1)" = "$device" ] || return 1
    else
        device=$(carrier_of default)
    fi
    [[ $device =~ ^tun[0-9]+$ ]] || return 1
    [ "$(cat "/sys/class/net/$device/type" 2>/dev/null)" = $no_hardware ] || return 1
    echo "$device"
}

# The configuration's servers, from the lines outside of its blocks of certificates and keys.
servers() {
    awk '/^[ \t]*<\// { block = 0; next } /^[ \t]*</ { block = 1 }
         !block && $1 == "remote" { sub(/\r$/, "", $2); if ($2 != "") print $2 }' "$config"
}

# Whether one of the configuration's servers is reached outside the tunnel. A server given by name cannot be
# checked without a query for the name, and counts.
leads_to_configured_server() {
    local remote
    while read -r remote; do
        (($(left) > 2500)) || return 1
        [[ $remote =~ $address ]] || return 0
        [ "$(route_to "$remote")" != "$tunnel" ] && return 0
    done < <(servers)
    return 1
}

# --- the web host's addresses

# The DNS query for the IPv4 addresses of a name, as escapes for printf.
query_for() {
    local rest=$1. label
    printf '\\x%02x\\x%02x' $((id >> 8)) $((id & 255))
    printf '%s' '\x01\x00\x00\x01\x00\x00\x00\x00\x00\x00'
    while [ -n "$rest" ]; do
        label=${rest%%.*}
        rest=${rest#*.}
        printf '\\x%02x%s' ${#label} "$label"
    done
    printf '%s' '\x00\x00\x01\x00\x01'
}

# Prints the IPv4 addresses in the answer whose bytes are the arguments; fails when it is not an answer to our query.
addresses_in() {
    local b=("$@") at=12 records
    skip_name() {
        while ((at < ${#b[@]} && b[at] > 0 && b[at] < 192)); do
            at=$((at + b[at] + 1))
        done
        # The end, or the jump to an earlier name.
        at=$((at + (${b[at]-0} < 192 ? 1 : 2)))
    }
    ((${#b[@]} > 12 && b[0] * 256 + b[1] == id && (b[2] & 128) && (b[3] & 15) == 0)) || return 1
    records=$((b[6] * 256 + b[7]))
    skip_name
    at=$((at + 4))
    while ((records-- > 0)); do
        skip_name
        ((at + 10 <= ${#b[@]})) || break
        # Type A, class IN, four bytes.
        if [ "${b[*]:at:4} ${b[*]:at + 8:2}" = "0 1 0 1 0 4" ] && ((at + 14 <= ${#b[@]})); then
            printf '%d.%d.%d.%d\n' "${b[@]:at + 10:4}"
        fi
        at=$((at + 10 + b[at + 8] * 256 + b[at + 9]))
    done
}

# Queries one resolver through the tunnel. dd, because each write has to be one packet.
query_resolver() {
    local bytes
    [ "$(route_to "$1")" = "$tunnel" ] || return 1
    {
        # shellcheck disable=SC2059 # the query consists of escapes
        printf "$(query_for "$2")" | dd bs=512 iflag=fullblock status=none >&3 || return 1
        read -r -d '' -a bytes < <(timeout -k 0.1 0.5 dd bs=512 count=1 status=none <&3 | od -An -v -tu1)
    } 3<>"/dev/udp/$1/53"
    addresses_in "${bytes[@]}"
} 2>/dev/null

addresses_of() {
    local found resolver
    if [[ $1 =~ $address ]]; then
        echo "$1"
        return
    fi
    found=$(getent -s files ahostsv4 "$1" | awk '{ print $1 }' | sort -u)
    for resolver in "${resolvers[@]}"; do
        [ -n "$found" ] && break
        id=$((SRANDOM & 0xffff))
        found=$(query_resolver "$resolver" "$1")
    done
    [ -n "$found" ] && echo "$found"
}

# --- the request

# No user configuration (-q has to come first), no proxy, no IPv6. "timeout" covers what curl's own limit does not.
request_address() { # MILLISECONDS
    local limit
    printf -v limit '%d.%03d' "$(($1 / 1000))" "$(($1 % 1000))"
    timeout -k 0.1 "$limit" curl -q -fsS -4 --interface "if!$tunnel" --noproxy '*' --proto '=https' \
        --resolve "$name:$port:$addresses" ${trusted[@]+"${trusted[@]}"} -H 'Accept: text/plain' \
        --connect-timeout "$limit" -m "$limit" --max-filesize 64 -- "https://$name:$port/ip" 2>/dev/null |
        head -c 64 | tr -d '\0\r\n\t '
}

[ -r "$config" ] && [ -f "$config" ] || exit 1
tunnel=$(carrying_tunnel) || exit 1
leads_to_configured_server || exit 1

mapfile -t settings < <(/bin/bash "$here/read-service-conf.sh" "$defaults" "$overrides")
host=${settings[0]-}
name=${host%%:*}
port=443
[[ $host == *:* ]] && port=${host##*:}
[[ $name =~ ^[A-Za-z0-9._-]+$ && $port =~ ^[0-9]+$ ]] || exit 1
ca=${settings[1]-}
trusted=()
[ -n "$ca" ] && trusted=(--cacert "$ca" --capath /etc/ssl/certs)

# A query or its answer may get lost, or a busy computer may be late for it: repeated while there is time.
addresses=
while [ -z "$addresses" ] && (($(left) > 2500)); do
    addresses=$(addresses_of "$name" | paste -sd,)
    [ -n "$addresses" ] || sleep 0.1
done
[ -n "$addresses" ] || exit 1
# On a busy computer the one request may use all the time that is left; a second one follows a quick refusal only.
for _ in 1 2; do
    time=$(left)
    ((time > 200)) || break
    found=$(request_address "$time")
    if [[ $found =~ $address ]]; then
        printf '%s\n' "$found"
        exit 0
    fi
done
exit 1
