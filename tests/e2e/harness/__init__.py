"""Starts the client in the home of the small world and drives it as a user would."""
