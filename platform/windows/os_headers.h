#pragma once

// The one way to the system's headers for this room. Their macros stay behind this line: a macro
// that bears the name of a method in platform/*.h would rename the method, so each such macro is
// undefined here.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX  // the standard library for this target sets it itself
#define NOMINMAX
#endif
#ifndef DECLSPEC_IMPORT  // tests may have the system's headers already
// No function of the system throws: whoever calls nothing else needs no unwinding.
#define DECLSPEC_IMPORT __declspec(dllimport) __attribute__((nothrow))
#endif
#include <windows.h>

#undef RtlMoveMemory
#undef GetUserName
#undef GetObject
