#!/bin/sh
# A fake nft. It records its commands beside itself, and refuses them while there is a file for that.
printf '%s\n' "$1" >>"$0.calls"
[ ! -e "$0.refuses" ]
