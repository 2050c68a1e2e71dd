"""The test network: a home, a gateway and an Internet of their own, in namespaces that end with the run."""
