// SPDX-License-Identifier: MIT
// A witness preloaded into a program (LD_PRELOAD): counts its calls of fontconfig's FcFontList,
// the list of every installed font that Qt's font database reads on its first use, and writes the
// count to the file named by FONTLIST_WATCH_FILE when the program exits.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fontconfig/fontconfig.h>
#include <stdio.h>
#include <stdlib.h>

static int calls;

// Built with hidden symbols like everything of the project: this one must take the place of
// fontconfig's.
__attribute__((visibility("default"))) FcFontSet* FcFontList(FcConfig* config, FcPattern* pattern,
                                                             FcObjectSet* objects) {
    typedef FcFontSet* (*List)(FcConfig*, FcPattern*, FcObjectSet*);
    static List next;
    if (!next) next = (List)dlsym(RTLD_NEXT, "FcFontList");
    ++calls;
    return next(config, pattern, objects);
}

__attribute__((destructor)) static void report(void) {
    const char* path = getenv("FONTLIST_WATCH_FILE");
    FILE* file = path ? fopen(path, "w") : NULL;
    if (!file) return;
    fprintf(file, "%d\n", calls);
    fclose(file);
}
