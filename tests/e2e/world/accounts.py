"""The users who have an account in the home."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Account:
    """One account of the home, as useradd needs it."""

    name: str
    full_name: str
    password: str
    administrator: bool = False
    # The home folder, if it is not the usual one below /home.
    home: str = ""

    @property
    def folder(self):
        return self.home or f"/home/{self.name}"


JOE = Account("joe", "Joe Plain", "joe-pw")
# The blank in the password is on purpose: it must reach sudo as it is.
ADA = Account("ada", "Ada Admin", "ada pw", administrator=True)
NORM = Account("norm", "Norm Nosudo", "norm-pw")
SUE = Account("sue", "Sue Self", "sue pw", administrator=True)
ALL = (JOE, ADA, NORM, SUE)
