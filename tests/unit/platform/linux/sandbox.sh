#!/bin/sh
# Inside fresh mount, process and network namespaces: makes them fit for a test program and runs it.
# With real root there are throw-away accounts too, on an overlay over /etc that goes with the namespace.
set -eu
mount -t proc proc /proc
ip link set lo up
mount -t tmpfs -o mode=755 tests /mnt
if [ "$(tr -s ' ' </proc/self/uid_map)" = " 0 0 4294967295" ]; then
    mkdir /mnt/upper /mnt/work
    mount -t overlay -o lowerdir=/etc,upperdir=/mnt/upper,workdir=/mnt/work overlay /etc
    for folder in /home /run /var/lib/sudo /var/log; do
        mkdir -p "$folder"
        mount -t tmpfs -o mode=755 tests "$folder"
    done
    mkdir -p /run/sudo /run/lock
    echo "127.0.0.1 $(hostname) localhost" >/etc/hosts
    useradd -m -s /bin/sh -c "Joe Plain" joe
    useradd -m -s /bin/sh -c "Ada Admin,Room 1,," -G sudo ada
    useradd -m -s /bin/sh -c "Norm Nosudo" norm
    useradd -m -s /usr/sbin/nologin -c "No Login" -G sudo nologin
    printf '%s\n' "joe:joepw" "ada:ada pw" "norm:normpw" "nologin:nologinpw" "root:rootpw" | chpasswd
    # The delay after a wrong password only costs time here.
    sed -i '/pam_unix.so/s/$/ nodelay/' /etc/pam.d/common-auth
    sed -i 's/^FAIL_DELAY.*/FAIL_DELAY 0/' /etc/login.defs
fi
status=0
"$@" || status=$?
exit "$status"
