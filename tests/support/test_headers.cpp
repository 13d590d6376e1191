// Nothing of its own: compiled for the headers that all test sources share, see
// tests/CMakeLists.txt.
