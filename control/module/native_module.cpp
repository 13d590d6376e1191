// The native module has no code of its own: it is the library's rooms, all of them, in one file.
