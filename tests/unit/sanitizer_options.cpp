// What the leak checker is not to report.

extern "C" const char *__lsan_default_suppressions();

// The font library keeps a cache of its own to the end of the process.
extern "C" const char *__lsan_default_suppressions() { return "leak:libfontconfig\n"; }

extern "C" const char *__lsan_default_options();
extern "C" const char *__lsan_default_options() { return "print_suppressions=0"; }
