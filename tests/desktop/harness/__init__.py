"""What the desktop tests and the tour are made of: a private desktop session, the real program in it, and the
hands and eyes of a person in front of it."""
