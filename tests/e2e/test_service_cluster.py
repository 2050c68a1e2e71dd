"""Many machines of the service share what they know in etcd: what happens when one of them fails."""

import os
import signal

import pytest

from harness.observe import figures
from world import cluster as clusters
from world import enter, pki
from world.cluster import GATEWAYS, address, wait_for

# Seconds after which a gateway that is down must be in no server list, and an order must count everywhere.
OUT_OF_LISTS, ORDER_COUNTS = 5, 2


@pytest.fixture(scope="module", name="shared_cluster")
def fixture_shared_cluster():
    made = clusters.Cluster(enter.BASE / "cluster", pki.of_this_run(enter.BASE / "pki"))
    yield made
    made.close()


@pytest.fixture(name="cluster")
def fixture_cluster(request, shared_cluster):
    """Every test leaves the nodes as they were: all of them run, know each other, and have no session."""
    yield shared_cluster
    report = getattr(request.node, "report_call", None)
    if report is not None and report.failed:
        print(shared_cluster.report())
    shared_cluster.end_sessions()


def test_sessions_through_any_node(cluster):
    for api in cluster.apis:
        for gateway in GATEWAYS:
            cluster.session(api, gateway)


def test_a_member_of_etcd_is_killed(cluster):
    """Sessions go on, new ones come up, and orders still reach every node."""
    session = cluster.session("api1", "gw1")
    member = cluster.knows_etcd("api1")["endpoint"].partition(":")[0]
    name = next(name for name, where in clusters.MEMBERS.items() if where == member)
    cluster.members[name].kill()
    took = wait_for(
        lambda: not any(member in cluster.knows_etcd(node).get("endpoint", member) for node in cluster.nodes),
        "all nodes are connected to another member",
    )
    figures.record("seconds until all nodes are connected to another member of etcd", round(took, 2))
    assert session.hides()
    cluster.session("api1", "gw2")
    cluster.wait_settled()
    other = cluster.session("api2", "gw3")
    assert cluster.apis["api2"].control("revoke", user=other.user)["ok"]
    wait_for(lambda: other.ended, "the revoked session ends")
    cluster.members[name].start()
    assert session.hides()


def test_an_api_node_is_killed(cluster):
    session = cluster.session("api1", "gw1")
    cluster.kill("api1")
    assert session.hides("api2")
    cluster.session("api2", "gw2")
    cluster.apis["api1"].start()
    cluster.wait_settled()
    assert session.hides("api1")


def test_a_gateway_is_killed(cluster):
    """It is left out of server lists, and requests for its addresses are refused, until it is back."""
    session = cluster.session("api1", "gw1")
    user, _password = cluster.credentials("api1")
    cluster.kill("gw2")
    took = wait_for(lambda: cluster.offer("gw1", "gw3"), "no list has the gateway")
    figures.record("seconds until a killed gateway is in no server list", round(took, 2))
    assert took < OUT_OF_LISTS
    answer = cluster.get("api1", cluster.target(user, address("gw2")))
    assert answer == "ERR: Address not available"
    assert session.hides()
    cluster.session("api2", "gw3")
    cluster.gateways["gw2"].start()
    took = wait_for(lambda: cluster.offer(*GATEWAYS), "the gateway is back in the lists")
    figures.record("seconds until a gateway that is ready again is in the server lists", round(took, 2))
    cluster.session("api1", "gw2")


def test_a_stopped_gateway_leaves_at_once(cluster):
    """Its lease does not have to expire."""
    cluster.gateways["gw2"].process.send_signal(signal.SIGTERM)
    took = wait_for(lambda: cluster.offer("gw1", "gw3"), "no list has the gateway")
    figures.record("seconds until a stopped gateway is in no server list", round(took, 2))
    assert took < ORDER_COUNTS
    assert cluster.gateways["gw2"].stop() == 0
    cluster.gateways["gw2"].start()
    cluster.wait_settled()


def test_all_of_etcd_is_away(cluster):
    """Sessions, requests and logins go on with what is known; an order given meanwhile is shared later."""
    session = cluster.session("api1", "gw1")
    cluster.kill_etcd()
    wait_for(
        lambda: not any(cluster.knows_etcd(name)["connected"] for name in cluster.nodes),
        "every node says that etcd is away",
    )
    assert session.hides()
    assert cluster.offer(*GATEWAYS)
    other = cluster.session("api2", "gw2")
    answer = cluster.apis["api2"].control("revoke", user=other.user)
    assert answer == {"ok": True, "ended": 0, "shared": "not yet"}
    refused = cluster.get("api2", cluster.target(other.user, address("gw2")))
    assert refused == "ERR: Unknown or expired session", "the order counts where it was given"
    assert cluster.knows_etcd("api2")["pending_orders"] == 1
    assert other.hides()
    cluster.start_etcd()
    wait_for(lambda: other.ended, "the order reaches the gateway when etcd is back")
    wait_for(lambda: cluster.knows_etcd("api2")["pending_orders"] == 0, "no order is pending")
    cluster.wait_settled()
    assert session.hides()


def test_two_gateways_with_one_address(cluster):
    """Only one of them lends it; the other one says so, and takes it when the first one gives it up."""
    contested = clusters.CONTESTED
    groups = {}
    for name in ("gw1", "gw2"):
        gateway = cluster.gateways[name]
        groups[name] = cluster.groups_of([name])
        changed = cluster.groups_of([name])
        changed[0]["addresses"].append(contested)
        gateway.configure(groups=changed)
        os.kill(gateway.pid, signal.SIGHUP)
        if name == "gw1":
            wait_for(
                lambda: contested in cluster.knows_etcd("api1")["gateways"]["gw1"]["addresses"],
                "the first one owns it",
            )
    wait_for(lambda: cluster.knows_etcd("gw2")["owned_by_others"] == {contested: "gw1"}, "it says so")
    assert contested not in cluster.knows_etcd("api1")["gateways"]["gw2"]["addresses"]
    assert f"{contested} is not lent here: gateway gw1 owns it" in cluster.gateways["gw2"].output.read_text()
    cluster.gateways["gw1"].configure(groups=groups["gw1"])
    os.kill(cluster.gateways["gw1"].pid, signal.SIGHUP)
    wait_for(
        lambda: contested in cluster.knows_etcd("api1")["gateways"]["gw2"]["addresses"],
        "the second one takes what is released",
    )
    assert cluster.knows_etcd("gw2")["owned_by_others"] == {}
    cluster.gateways["gw2"].configure(groups=groups["gw2"])
    os.kill(cluster.gateways["gw2"].pid, signal.SIGHUP)
    wait_for(
        lambda: contested not in cluster.knows_etcd("api1")["gateways"]["gw2"]["addresses"], "it is released"
    )


def test_a_revocation_at_an_api_node_ends_the_session(cluster):
    # No other test uses these addresses.
    users = cluster.session("api1", "gw1", last=3), cluster.session("api1", "gw2", last=3)
    assert cluster.apis["api2"].control("revoke", user=users[0].user)["ok"]
    assert cluster.lends(users[1])
    took = [wait_for(lambda: not cluster.lends(users[0]), "the user's session ends")]
    assert cluster.apis["api1"].control("revoke", address=users[1].lent)["ok"]
    took.append(wait_for(lambda: not cluster.lends(users[1]), "the address's session ends"))
    figures.record(
        "seconds from a revocation at an API node to the end of the session", [round(t, 3) for t in took]
    )
    assert max(took) < ORDER_COUNTS
    for session in users:
        wait_for(lambda session=session: session.ended, "the client ends, too")


def test_a_drained_gateway_is_left_out(cluster):
    """Its sessions continue; the other gateways are not drained."""
    session = cluster.session("api1", "gw1")
    assert cluster.gateways["gw1"].control("drain") == {"ok": True}
    took = wait_for(lambda: cluster.offer("gw2", "gw3"), "no list has the drained gateway")
    figures.record("seconds until a drained gateway is in no server list", round(took, 2))
    assert took < OUT_OF_LISTS
    assert session.hides()
    cluster.session("api1", "gw2")
    assert cluster.gateways["gw1"].control("drain", on=False) == {"ok": True}
    cluster.wait_settled()


def test_a_drain_at_an_api_node_is_for_the_whole_service(cluster):
    session = cluster.session("api1", "gw1")
    assert cluster.apis["api1"].control("drain") == {"ok": True}
    took = wait_for(
        lambda: all(node.control("status")["draining"] for node in cluster.nodes.values()), "all nodes drain"
    )
    assert took < ORDER_COUNTS
    assert cluster.offer()
    assert session.hides()
    assert cluster.apis["api2"].control("drain", on=False) == {"ok": True}
    cluster.wait_settled()
    cluster.session("api1", "gw1", last=2)


def test_orders_and_owners_survive_a_restart_with_etcd_away(cluster):
    """Also those that were given at another node."""
    session = cluster.session("api1", "gw1")
    assert cluster.apis["api1"].control("revoke", address=address("gw3"))["ok"]
    assert cluster.apis["api1"].control("revoke", user=session.user)["ok"]
    wait_for(lambda: session.ended, "the order has reached the gateway")
    wait_for(
        lambda: all(node.control("status")["revocations"] > 0 for node in cluster.nodes.values()),
        "the orders are everywhere",
    )
    before = {name: node.control("status")["revocations"] for name, node in cluster.nodes.items()}
    cluster.kill_etcd()
    for name in ("api2", "gw1"):
        cluster.kill(name)
        cluster.nodes[name].start()
        status = cluster.nodes[name].control("status")
        assert not status["etcd"]["connected"]
        assert status["revocations"] == before[name]
    refused = cluster.get("api2", cluster.target(session.user, address("gw1")))
    assert refused == "ERR: Unknown or expired session"
    cluster.session("api2", "gw1", last=2)
    cluster.start_etcd()
    cluster.wait_settled()


def test_release_of_a_gateway_that_is_gone_for_good(cluster):
    """Refused while it is registered; then another gateway can have its addresses."""
    lent = address("gw3", 3)
    answer = cluster.apis["api1"].control("release", gateway="gw3")
    assert not answer["ok"] and "registered" in answer["error"]
    cluster.kill("gw3")
    wait_for(lambda: cluster.offer("gw1", "gw2"), "no list has the gateway")
    groups = cluster.groups_of(["gw2"])
    groups[0]["addresses"].append(lent)
    cluster.gateways["gw2"].configure(groups=groups)
    os.kill(cluster.gateways["gw2"].pid, signal.SIGHUP)
    wait_for(lambda: cluster.knows_etcd("gw2")["owned_by_others"] == {lent: "gw3"}, "it is owned")
    assert cluster.apis["api1"].control("release", gateway="gw3") == {"ok": True, "released": 3}
    wait_for(
        lambda: lent in cluster.knows_etcd("api1")["gateways"]["gw2"]["addresses"], "the other one owns it"
    )
    cluster.gateways["gw2"].configure(groups=cluster.groups_of(["gw2"]))
    os.kill(cluster.gateways["gw2"].pid, signal.SIGHUP)
    cluster.gateways["gw3"].start()
    cluster.wait_settled()
    wait_for(
        lambda: lent in cluster.knows_etcd("api1")["gateways"]["gw3"]["addresses"], "it is released again"
    )
    cluster.session("api1", "gw3", last=3)
