"""What a test observes and records: packets, files, outcomes, figures, evidence of a failure."""
