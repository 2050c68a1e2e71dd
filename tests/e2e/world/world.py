"""All of the small world together."""

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
    """The network, the service and one home. Only inside of enter.py's namespaces."""

    def __init__(self, *, contents=None, program=None, serve=True, name_servers=home.RIGHT_NAME_SERVERS, x11=None,
                 **service_settings):
        if not enter.inside():
            raise RuntimeError("the small world is made inside of tests/e2e/world/enter.py only")
        self.folder = enter.BASE / "world"
        self.folder.mkdir()
        self.network = network.Network(self.folder)
        authority = pki.Authority(self.folder / "pki")
        self.ca = authority.certificate
        self.service = service.Service(program or service.program_from_environment(), self.folder / "service",
                                       authority, **service_settings)
        self.home = home.Home(self.folder, contents or contents_from_environment(), self.ca,
                              name_servers=name_servers, x11=x11)
        if serve:
            self.service.start()

    def close(self, keep_logs=None):
        """Takes it all down, the logs into `keep_logs` when given; the service's exit status."""
        self.home.close()
        status = self.service.stop()
        self.network.close()
        if keep_logs is not None:
            keep_logs.mkdir(parents=True, exist_ok=True)
            for log in (self.service.request_log, self.service.output, self.folder / "dnsmasq.log",
                        *self.service.runtime.glob("*.log")):
                if log.exists():
                    shutil.copy(log, keep_logs)
        shutil.rmtree(self.folder, ignore_errors=True)
        return status
