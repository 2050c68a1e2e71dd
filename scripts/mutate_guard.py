#!/usr/bin/python3
"""scripts/mutate_guard.py [NUMBER...]: removes each rule of the guard once and looks whether a test notices.

Works in a copy of the tree, with the preset "debug". Every rule of the lists and checks below is a change of
one line; the unit tests of the guard must fail with it. Prints the ones that no test noticed and how many of
how many were noticed; the exit status is 1 when one was not.
"""

import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
TESTS = ("guard_test", "guard_program_test")

# File -> (text that occurs once, what it becomes).
CHANGES = {
    "guard/TunnelRules.cpp": [
        ("route.type != RTN_UNICAST || !route.usesOnly(device)", "!route.usesOnly(device)"),
        ("route.type != RTN_UNICAST || !route.usesOnly(device)", "route.type != RTN_UNICAST"),
        ("!before.routes.contains(route) && !isServer", "!isServer"),
        ("&& !isServer(route.destination, tunnel.servers)", ""),
        ("takesFromTunnel(route, now, tunnel.device) &&", ""),
        ("!isWithinConnectedNetwork(route, now, tunnel.device)", "true"),
        ("one.destination.length > 0 &&", ""),
        ("!one.leadsThroughGateway() && !one.usesOnly(tunnel) &&", "!one.usesOnly(tunnel) &&"),
        ("!one.leadsThroughGateway() && !one.usesOnly(tunnel) &&", "!one.leadsThroughGateway() &&"),
        ("rule.priority < mainRulePriority", "true"),
        ("rule.family == route.destination.family && rule.table", "rule.table"),
        ("if (!carriesAll(now, tunnel.device)) {", "if (false) {"),
        ("if (leadsPastTunnel(route, before, now, tunnel)) {", "if (false) {"),
        ("if (!isTransient(route) && !now.routes.contains(route)) {", "if (false) {"),
        ("if (!isTransient(route) && !now.routes.contains(route)) {", "if (!now.routes.contains(route)) {"),
        ("address.address.family == AF_INET && !now.addresses", "false && !now.addresses"),
        ("isMadeByHand(route) &&", ""),
        ("route.destination.length > 0 && !before", "!before"),
        ("was->second != is->second", "false"),
        ("!isReplaced &&", ""),
    ],
    "guard/SessionRoutes.cpp": [
        ("!device || m_before.devices.contains(*device)", "!device"),
        ("m_isUp = true;", "m_isUp = false;"),
        ("looked.insert(changes.added.begin(), changes.added.end());", ""),
        ("!changes.isIncomplete &&", ""),
        ("m_routing.remove(route);", ""),
        ("repair.add) {\n        m_routing.add(route);", "repair.add) {"),
        ("m_routing.add(route); // refused", "// refused"),
        ("m_carriesAll = carriesAll(now.value(), m_tunnel.device);", ""),
        ("        changes.isIncomplete || std::ranges", "        std::ranges"),
    ],
    "guard/RouteRecord.cpp": [
        ("reader.field() != placeOfRecord()", "reader.field().empty()"),
        (
            "O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600",
            "O_WRONLY | O_CREAT | O_CLOEXEC, 0644",
        ),
        ("checkSum != checkSumOf(reader.rest())", "checkSum.empty()"),
    ],
    "guard/Caller.cpp": [
        ("state.st_uid == root || state.st_uid == caller", "true"),
        ("(state.st_mode & S_IWOTH) == 0", "true"),
        ("(state.st_mode & S_IWGRP) == 0", "true"),
        ("isAbove && S_ISDIR", "S_ISDIR"),
        ("read.ptr == end ?", "true ?"),
    ],
    "guard/TunnelLog.cpp": [
        ("    maskToken(line);\n", ""),
        ("    maskCompletion(line);\n    m_isOver", "    m_isOver"),
        ("beginsWithTime(line) && withoutTime", "withoutTime"),
        ("    giveUp();\n    addLine", "    addLine"),
    ],
    "guard/Program.cpp": [
        ('{"--pull-filter", "ignore", ""}', "{}"),
        ('"--redirect-gateway",\n        "def1",', ""),
        ("caller && file.owner == *caller", "bool(caller)"),
        ("file.value().owner != owner", "false"),
        ("O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600", "O_RDWR | O_CREAT | O_CLOEXEC, 0600"),
        ("    openings.close();\n    routes.restore();", "    routes.restore();"),
    ],
    "guard/Files.cpp": [
        ("!S_ISREG(state.st_mode)", "false"),
        ("state.st_nlink != 1", "false"),
        ("O_PATH | O_NOFOLLOW | O_CLOEXEC", "O_PATH | O_CLOEXEC"),
    ],
    "guard/Supervisor.cpp": [
        ("if (m_deadline && Clock::now() >= *m_deadline) {", "if (m_deadline && ready == 0) {"),
        ("prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 &&", ""),
        ("prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);", ""),
        ("return m_openings.openForDevice(m_routes.device());", "return {};"),
    ],
    "guard/Configuration.cpp": [
        ("m_markSize + line.size() >= lineBufferSize", "false"),
        ("m_markSize + line.size() >= lineBufferSize", "line.size() >= lineBufferSize"),
        ("line.find('\\0') != std::string_view::npos", "false"),
        ("if (character == '\\\\') {", "if (false) {"),
        ("quote != '\\0' && position == rest.size()", "false"),
        ("tokens.size() == maximumTokens", "false"),
        ('text.find_first_not_of(" \\t") != std::string_view::npos', "false"),
    ],
    "guard/LockOpenings.cpp": [
        ("if (access(m_note.c_str(), F_OK) != 0) {", "if (false) {"),
        ("if (!host || host->family != AF_INET) {", "if (!host) {"),
        ("tokens.size() > 2 ? std::set{tokens[2]} : ways.ports", "ways.ports"),
        ("tokens.size() > 3 ? std::set{familyOf(tokens[3])} : ways.protocols", "ways.protocols"),
        ('return run(flushed("tunnels") + flushed("servers") +\n', 'return run(flushed("servers") +\n'),
        ('return run(flushed("tunnels") + added(', "return run(added("),
        ("if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {", "if (false) {"),
    ],
}


def directives(text):
    """A change for each directive of the list: its values are not checked any more."""
    for case in re.findall(r"    case Values::(\w+):\n        return (?!true)", text):
        begin = f"    case Values::{case}:\n        return "
        yield begin, f"{begin}true || "


def run(folder, *command):
    done = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False, timeout=900)
    return done.returncode == 0, done.stdout + done.stderr


def is_noticed(folder):
    """True when the changed guard does not pass its tests. One that does not compile proves nothing."""
    built, output = run(folder, "cmake", "--build", "build/debug", "-j2", "--target", *TESTS)
    if not built:
        raise RuntimeError(output[-2000:])
    # The quicker one first; most changes are noticed by it.
    return any(
        not run(folder, "ctest", "--test-dir", "build/debug", "-R", f"^{test}$", "--no-tests=error")[0]
        for test in TESTS
    )


def all_changes():
    for name, changes in CHANGES.items():
        for old, new in changes:
            yield name, old, new
    name = "guard/AllowList.cpp"
    for old, new in directives((ROOT / name).read_text(encoding="utf-8")):
        yield name, old, new


def main():
    wanted = {int(number) for number in sys.argv[1:]}
    noticed, missed = 0, []
    with tempfile.TemporaryDirectory() as folder:
        copy = Path(folder) / "tree"
        shutil.copytree(ROOT, copy, ignore=shutil.ignore_patterns("build", ".git"))
        options = ["-DCMAKE_CXX_FLAGS=-Wno-error", "-DQUORVANE_WERROR=OFF"]
        if not run(copy, "cmake", "--preset", "debug", *options)[0] or is_noticed(copy):
            print("the tests do not pass without a change", file=sys.stderr)
            return 2
        for number, (name, old, new) in enumerate(all_changes(), 1):
            if wanted and number not in wanted:
                continue
            path = copy / name
            text = path.read_text(encoding="utf-8")
            if text.count(old) != 1:
                raise ValueError(f"{name}: occurs {text.count(old)} times: {old}")
            path.write_text(text.replace(old, new), encoding="utf-8")
            try:
                was_noticed = is_noticed(copy)
            except RuntimeError as error:
                print(f"{number}: {name}: does not compile: {old}\n{error}", file=sys.stderr)
                return 2
            path.write_text(text, encoding="utf-8")
            noticed += was_noticed
            if not was_noticed:
                missed.append(f"{number}: {name}: {old!r} -> {new!r}")
                print(missed[-1], flush=True)
    print(f"{noticed} of {noticed + len(missed)} removed rules were noticed")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
