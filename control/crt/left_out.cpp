// What the module leaves out of the run-time library: two of its operations that are never reached
// here and would be as large as the rest of the module.

#include <cstdlib>

// What the start-up code calls to mend references to data in other modules. The module has no such
// reference (the linker is told to refuse one), and the mending would bring printing, and code that
// makes its own pages writable.
extern "C" void _pei386_runtime_relocator();  // NOLINT(bugprone-reserved-identifier): its name

extern "C" void _pei386_runtime_relocator() {}

// What is called for an exception that nobody catches: the library's own handler prints the
// exception's name. No exception leaves a door of this module.
namespace __gnu_cxx {

void __verbose_terminate_handler();

void __verbose_terminate_handler() { std::abort(); }

}  // namespace __gnu_cxx
