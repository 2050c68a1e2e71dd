"""Programs that run inside the home, where they can import each other only."""
