#!/bin/sh
# runner_test.sh PROGRAM: what the window tests' main() passes and what makes it fail. PROGRAM is gui_runner_classes.
program=$1
failed=0

expect() { # STATUS ARGUMENT...
    expected=$1
    shift
    "$program" "$@" >/dev/null 2>&1
    status=$?
    if [ "$status" != "$expected" ]; then
        echo "arguments '$*': status $status instead of $expected"
        failed=1
    fi
}

expect 0 Passing
expect 0 Passing nothing
expect 1 Failing
expect 1 Leaving
expect 1 # all of them
expect 1 Passing noSuchFunction
expect 2 NoSuchClass
exit $failed
