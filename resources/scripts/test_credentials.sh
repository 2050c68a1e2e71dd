#!/bin/sh
# Listed, never run: that the administrator's account may list this file shows that the stored user name
# and password are accepted. Must stay readable and may stay empty.
exit 0
