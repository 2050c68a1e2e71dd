"""A certificate authority, made anew for every run, and the certificates that it signs."""

import functools
import subprocess
from pathlib import Path

CURVE = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"]
DAYS = "2"


def _openssl(*arguments):
    done = subprocess.run(["openssl", *arguments], capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"openssl {arguments[0]}: {done.stderr}")


class Authority:
    """Owns `folder` with ca.crt, ca.key and one NAME.crt, NAME.key per leaf."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.folder.mkdir(mode=0o700, parents=True)
        self.certificate = self.folder / "ca.crt"
        self._key = self.folder / "ca.key"
        self._leaves = {}
        _openssl(
            "req",
            "-x509",
            *CURVE,
            "-keyout",
            str(self._key),
            "-out",
            str(self.certificate),
            "-days",
            DAYS,
            "-subj",
            "/CN=Test Network CA",
            "-addext",
            "basicConstraints=critical,CA:TRUE",
            "-addext",
            "keyUsage=critical,keyCertSign,cRLSign",
        )

    def leaf(self, name, subject_names, days=DAYS, usage="serverAuth"):
        """A server certificate; returns (certificate, key). subject_names: as in subjectAltName.

        `usage`: as in extendedKeyUsage.

        A negative number of days makes one that has expired. The same request again returns the same files.
        """
        certificate, key = self.folder / f"{name}.crt", self.folder / f"{name}.key"
        if self._leaves.get(name) == (subject_names, days, usage):
            return certificate, key
        request, extensions = self.folder / f"{name}.csr", self.folder / f"{name}.ext"
        extensions.write_text(
            f"basicConstraints=CA:FALSE\nkeyUsage=digitalSignature\nextendedKeyUsage={usage}\n"
            f"subjectAltName={subject_names}\n",
            encoding="utf-8",
        )
        _openssl("req", *CURVE, "-keyout", str(key), "-out", str(request), "-subj", f"/CN={name}")
        _openssl(
            "x509",
            "-req",
            "-in",
            str(request),
            "-CA",
            str(self.certificate),
            "-CAkey",
            str(self._key),
            "-CAcreateserial",
            "-out",
            str(certificate),
            "-days",
            days,
            "-extfile",
            str(extensions),
        )
        self._leaves[name] = (subject_names, days, usage)
        return certificate, key


@functools.cache
def of_this_run(folder):
    """The authority in this folder, which is made at the first call: the networks of all tests share it."""
    return Authority(folder)
