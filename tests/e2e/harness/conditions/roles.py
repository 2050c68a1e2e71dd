"""A service that is divided: one process answers requests, another one lends addresses."""

import contextlib
import shutil

from world import service

KEYS = ("user.keys", "control.key", "client-authority.pem")


@contextlib.contextmanager
def divided(world):
    """world.service answers requests from now on; the value is the service that lends addresses.

    They share the files in `world.folder / "shared"`, and nothing else.
    """
    api = world.service
    api.stop()
    shared = world.folder / "shared"
    shared.mkdir()
    for name in KEYS:
        shutil.move(api.runtime / name, shared / name)
    users, control_key, authority = (str(shared / name) for name in KEYS)
    vpn = {**api.vpn_settings, "control_key": control_key, "client_authority": authority}
    gateway = service.Service(api.program, world.folder / "gateway", world.authority, keys=users, vpn=vpn)
    gateway.role, api.role = "gateway", "api"
    api.configure(keys=users, vpn={**vpn, "certificate": "/none", "key": "/none"})
    gateway.configure(tls={"certificate": "/none", "key": "/none"})
    with contextlib.ExitStack() as ends:
        ends.callback(lambda: gateway.end())  # pylint: disable=unnecessary-lambda
        gateway.start()
        api.start()
        yield gateway
        assert gateway.end() == 0
