// What the start-up code calls to mend references to data in other modules, in place of the
// run-time library's own way. The module has no such reference (the linker is told to refuse one),
// and the mending would bring printing, and code that makes its own pages writable.

extern "C" void _pei386_runtime_relocator();  // NOLINT(bugprone-reserved-identifier): its name

extern "C" void _pei386_runtime_relocator() {}
