"""Drives the client from outside: its windows, keyboard, screen and trays."""
