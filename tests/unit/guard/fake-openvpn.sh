#!/bin/sh
# A fake OpenVPN. The host in the configuration's first "remote" line selects what it does.
host=$(sed -n 's/^remote \([^ ]*\).*/\1/p' "$2" | head -n 1)
case $host in
up) echo "2026-11-21 10:00:00 Initialization Sequence Completed"; exec sleep 600 ;;
early) echo "Options error: something"; exit 1 ;;
quiet) exit 0 ;;
hangs) echo "2026-11-21 10:00:00 waiting"; exec sleep 600 ;;
chatters) exec yes "2026-11-21 10:00:00 waiting" ;;
late) trap 'echo "2026-11-21 10:00:00 Initialization Sequence Completed"; exit 0' TERM; while :; do sleep 0.05; done ;;
stubborn) trap '' TERM; echo "2026-11-21 10:00:00 waiting"; while :; do sleep 600 & wait; done ;;
binary) printf 'a\377\001b\n'; exit 1 ;;
reports)
    echo "arguments: $*"
    echo "variables: $(env | cut -d= -f1 | grep -vE '^(PWD|_|SHLVL|OLDPWD)$' | sort | tr '\n' ' ')"
    # shellcheck disable=SC2012 # the links of descriptors, whose names are numbers
    echo "files: $(ls -l /proc/self/fd | sed -n 's/.* -> //p' | tr '\n' ' ')"
    sed -n 's/^NoNewPrivs:[[:space:]]*/no new privileges: /p; s/^SigIgn:[[:space:]]*/ignored: /p; s/^SigBlk:[[:space:]]*/blocked: /p' /proc/self/status
    echo "folder: $(pwd)"
    echo "credentials: $(tr '\n' '|' <"$6")"
    echo "configuration: $(tr '\n' '|' <"$2")"
    exit 0
    ;;
esac
