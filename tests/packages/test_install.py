"""Installation, removal and purge on a bare Debian, without sessions."""

from layers import PACKAGES, package_file

CONFIGURATION = "etc/quorvane/service.conf"


def differences(before, after):
    """Paths that have come, gone or changed."""
    return {path for path in before.keys() | after.keys() if before.get(path) != after.get(path)}


def test_nothing_is_left_after_a_purge(machine, debs):
    before = machine.files()
    machine.install(*(package_file(debs, name) for name in PACKAGES))
    came = differences(before, machine.files())
    assert {"usr/bin/quorvane", "usr/sbin/quorvane-service", "etc/quorvane-service", "etc/passwd"} <= came
    for user in ("quorvane-api", "quorvane-gateway"):
        assert user in machine.run("getent", "group", "quorvane-service")
    machine.run("dpkg", "--purge", *PACKAGES)
    assert differences(before, machine.files()) == set()


def test_what_an_administrator_wrote_stays_until_the_purge(machine, debs):
    before = machine.files()
    machine.install(*(package_file(debs, name) for name in PACKAGES))
    (machine.root / "etc/quorvane").mkdir()
    (machine.root / CONFIGURATION).write_text("api_host = api.example.org\n", encoding="utf-8")
    (machine.root / "etc/quorvane-service/service.json").write_text("{}", encoding="utf-8")
    machine.run("dpkg", "--remove", *PACKAGES)
    assert (machine.root / CONFIGURATION).exists()
    assert (machine.root / "etc/quorvane-service/service.json").exists()
    machine.install(*(package_file(debs, name) for name in PACKAGES))
    assert (machine.root / CONFIGURATION).read_text(encoding="utf-8") == "api_host = api.example.org\n"
    machine.run("dpkg", "--purge", *PACKAGES)
    assert differences(before, machine.files()) == set()


def test_every_library_is_a_dependency(machine, debs):
    machine.install(*(package_file(debs, name) for name in PACKAGES))
    for program in (
        "/usr/lib/quorvane/bin/quorvane",
        "/usr/lib/quorvane/Resources/openvpn",
        "/usr/sbin/quorvane-service",
    ):
        listed = machine.run("ldd", program)
        assert "libc.so.6" in listed and "not found" not in listed, listed
    assert machine.run("quorvane", "--version") == "1.0.0\n"
    assert machine.run("quorvane", "--status", check=False) == "Quorvane is not running.\n"


def test_installed_files_are_those_of_the_packages(machine, debs):
    machine.install(*(package_file(debs, name) for name in PACKAGES))
    assert machine.run("dpkg", "--verify", *PACKAGES) == ""
    assert machine.run("quorvane-service", check=False).startswith("usage: quorvane-service ")
