#!/bin/sh
# Never run, only listed: if the administrator's account can list this file, the stored user name
# and password are accepted. Must be readable and may be empty.
exit 0
