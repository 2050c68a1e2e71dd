"""Requests to the service's API, sent from the home by a plain user in the form that the client uses."""

import re

from world import network

_IDENTITY = "ver=1&device=1"
_CALLER = "systamp=MacOS,user,mobilebox&uniqueid=x"
SERVER_LIST = f"/?cmd=MRTSL&{_IDENTITY}&{_CALLER}"


def configuration_target(user, address, protocol="UDP"):
    """The target of a request for the configuration of one address; `user` is a user from a server list."""
    return f"/?cmd=VPNC&{_IDENTITY}&server=571&desiredip={address}&sessid={user}&&{_CALLER}&proto={protocol}"


def get(home, target):
    """The body of the service's answer."""
    command = ["curl", "-q", "-fsS", "-4", "--cacert", "/etc/quorvane/ca.crt"]
    return home.run(*command, f"https://{network.API_HOST}{target}", user="joe").stdout


def credentials(home):
    """Requests a server list; returns the one-time user and password in it."""
    text = get(home, SERVER_LIST).replace("<br />", "\n")
    return tuple(re.search(rf"^{key}:\s*(\S+)", text, re.M).group(1) for key in ("VPNUser", "VPNPass"))


def configuration_of(answer):
    """The OpenVPN configuration in the answer to such a request."""
    return answer.partition("VPNConfig: ")[2].replace("<br />", "\n")
