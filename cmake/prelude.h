// Included before everything else, on the command line, to settle what whoever builds may have
// chosen already, in one of the many ways to define a macro.

// The C library checks calls only in optimised code, and warns otherwise.
#if defined __OPTIMIZE__ && !defined _FORTIFY_SOURCE
#define _FORTIFY_SOURCE 3
#endif

// These checks call into the C++ runtime library, which is not there at run time.
#undef _GLIBCXX_ASSERTIONS
