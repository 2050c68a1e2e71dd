"""Conditions that a test creates around the client: servers, disks, clocks, resolvers, tunnels."""
