// The exceptions of the standard library's containers, and the functions by which they throw them,
// in place of the library's own: those carry reference-counted messages, which bring half of the
// library along, down to the random device. Types and handlers are the same; only the message is
// kept by pointer, which serves, since each one is a literal.

#include <bits/functexcept.h>

#include <new>
#include <stdexcept>

namespace std {

__cow_string::__cow_string() : _M_p(nullptr) {}
__cow_string::~__cow_string() {}

logic_error::logic_error(const char* message) { _M_msg._M_p = message; }
logic_error::~logic_error() noexcept {}
const char* logic_error::what() const noexcept { return _M_msg._M_p; }

length_error::length_error(const char* message) : logic_error(message) {}
length_error::~length_error() noexcept {}

out_of_range::out_of_range(const char* message) : logic_error(message) {}
out_of_range::~out_of_range() noexcept {}

void __throw_bad_alloc() { throw bad_alloc(); }

void __throw_bad_array_new_length() { throw bad_array_new_length(); }

void __throw_length_error(const char* message) { throw length_error(message); }

void __throw_logic_error(const char* message) { throw logic_error(message); }

void __throw_out_of_range(const char* message) { throw out_of_range(message); }

void __throw_out_of_range_fmt(const char* message, ...) { throw out_of_range(message); }

}  // namespace std
