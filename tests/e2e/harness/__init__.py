"""What the end-to-end tests are made of: driving the client, creating conditions, observing results."""
