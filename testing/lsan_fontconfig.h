// testing/lsan_fontconfig.h
//
// fontconfig loses track of a few hundred bytes of the configuration it
// loads once per process. Included once by each test or fuzz program that
// draws text, it tells the leak checker to pass over them; the library
// itself never calls FcFini, which would pull the configuration from under
// a host that uses fontconfig too.

#ifndef ZYN_TESTING_LSAN_FONTCONFIG_H_
#define ZYN_TESTING_LSAN_FONTCONFIG_H_

extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }

#endif  // ZYN_TESTING_LSAN_FONTCONFIG_H_
