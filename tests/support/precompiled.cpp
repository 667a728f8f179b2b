// Holds a compiled header, and nothing else.
