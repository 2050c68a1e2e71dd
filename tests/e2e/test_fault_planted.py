"""Files that another user or program has made in the place of the client's own."""

import os

from harness.observe.outcomes import check_session
from world.accounts import ADA, NORM
from world.service import BERLIN

LOG = "Documents/Quorvane/qrvp.log"
SECONDS = 300


def plant_answers(home):
    """Makes, as another user, the files that the client would use in the next minutes."""
    home.run(
        "bash",
        "-c",
        f'now=$(date +%s); for second in $(seq 0 {SECONDS}); do : >"/tmp/auth-$(date -d @$((now + second)) '
        '+%Y%m%d-%H%M%S)"; done',
        user=NORM.name,
    )
    return sorted(path.name for path in home.path("/tmp").glob("auth-*"))


def test_names_of_another_user_are_passed_by(world, client):
    """The list arrives although every name that it could have in /tmp belongs to another user."""
    planted = plant_answers(world.home)
    assert len(planted) == SECONDS + 1
    client.start_ready(ADA, location=BERLIN.title)
    assert client.button_state({"window": "Quorvane (ver.", "description": "Location choice"})["name"] == (
        BERLIN.title
    )
    assert client.alerts() == []
    assert sorted(path.name for path in world.home.path("/tmp").glob("auth-*")) == planted
    own = client.file("Library/Caches/com.tallowind.Quorvane")
    assert list(own.iterdir()) == [] and own.stat().st_mode & 0o777 == 0o700
    check_session(client)


def test_a_pipe_in_place_of_the_session_log(world, client):
    """A session begins and ends as usual; no program reads the pipe."""
    client.remember_administrator(ADA, location=BERLIN.title)
    world.home.run("mkdir", "-p", f"{client.folder}/Documents/Quorvane", user=client.user)
    world.home.run("mkfifo", f"{client.folder}/{LOG}", user=client.user)
    client.start()
    client.wait_ready()
    check_session(client)
    assert client.file(LOG).is_fifo()
    reader = os.open(client.file(LOG), os.O_RDONLY | os.O_NONBLOCK)
    assert os.read(reader, 1) == b""
    os.close(reader)
