// SPDX-License-Identifier: MIT
// Linked into every host program and test executable. In a sanitizer build, LeakSanitizer asks
// the program for its built-in suppressions: Qt's platform plugins (the headless "offscreen" one
// among them) never free the screens and cursors they make when the application starts. Those
// are Qt's, made once per process, and not ours to fix; every other leak is still reported.
#if defined(__SANITIZE_ADDRESS__)
extern "C" {

__attribute__((visibility("default"), used)) const char* __lsan_default_suppressions() {
    return "leak:QGuiApplicationPrivate::createPlatformIntegration\n";
}

// Quiet about the suppressions it used: programs' standard error is part of what tests check.
__attribute__((visibility("default"), used)) const char* __lsan_default_options() {
    return "print_suppressions=0";
}

// Qt is built without frame pointers, so the fast unwinder stops one frame into Qt and the
// suppression above would never see the function it names. The environment's ASAN_OPTIONS
// still override this.
__attribute__((visibility("default"), used)) const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0";
}

}  // extern "C"
#endif
