"""The whole test network: its namespaces, the service and one home."""

import contextlib
import os
import shutil
from pathlib import Path

from . import enter, home, network, pki, service


def contents_from_environment():
    """The client's contents folder: QUORVANE_CONTENTS, set by ctest and by ./run."""
    path = os.environ.get("QUORVANE_CONTENTS")
    if not path or not (Path(path) / "bin" / "quorvane").exists():
        raise RuntimeError("QUORVANE_CONTENTS must name the contents folder, with bin/quorvane in it")
    return Path(path)


class World:
    """The networks, the service and one home. Only inside of enter.py's namespaces, one at a time."""

    def __init__(
        self,
        *,
        contents=None,
        program=None,
        serve=True,
        name_servers=home.RIGHT_NAME_SERVERS,
        x11=None,
        ipv6=False,
        people=(),
        root=None,
        **service_settings,
    ):
        if not enter.inside():
            raise RuntimeError("the test network can only be made inside of tests/e2e/world/enter.py")
        self.folder = enter.BASE / "world"
        self._status = 0
        with contextlib.ExitStack() as made:
            self.folder.mkdir()
            made.callback(shutil.rmtree, self.folder)
            self.network = network.Network(self.folder, ipv6=ipv6)
            made.callback(self.network.close)
            authority = self.authority = pki.of_this_run(enter.BASE / "pki")
            self.service = service.Service(
                program or service.program_from_environment(),
                self.folder / "service",
                authority,
                **service_settings,
            )
            made.callback(self._end_service)
            if serve:
                self.service.start()
            self.home = home.Home(
                self.folder,
                contents or contents_from_environment(),
                authority.certificate,
                name_servers=name_servers,
                x11=x11,
                people=people,
                root=root,
            )
            made.callback(self.home.close)
            self._made = made.pop_all()

    def _end_service(self):
        self._status = self.service.end()

    def wait_nothing_lent(self):
        """Waits until the gateway has no lent address any more."""
        self.home.wait_for(lambda: not self.service.lent(), "no address is lent any more")

    def save_logs(self, folder):
        """Copies the logs of the service, its OpenVPN servers and the name server."""
        folder.mkdir(parents=True, exist_ok=True)
        for log in (
            self.service.request_log,
            self.service.output,
            self.folder / "dnsmasq.log",
            *self.service.runtime.glob("*.log"),
        ):
            if log.exists():
                shutil.copy(log, folder)

    def close(self):
        """Removes everything, the home first; returns the service's exit status."""
        self._made.close()
        return self._status
