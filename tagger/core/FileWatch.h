// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

namespace zphonetic::tagger {

// Tells, without a look at the file itself, whether a file may have changed since it was last
// looked at: the kernel notes every change in the directory that holds it (or, while that
// directory is missing, in the nearest one above it that exists), and asking for those notes
// costs one call that finds none waiting. A stat() of the file's path costs twice that and more,
// and the tagging library asks once for every tagger it makes: once a character of a long text.
//
// A change made on this machine is noted before the call that made it returns, so a program
// that saves the file and then asks sees the change. What the kernel cannot note (the file a
// symbolic link to another directory, a network file system written from another machine, a
// hard link written through another directory) is caught by looking again at least once a
// second, and by looking every time when the file is a link or cannot be watched.
//
// A watch is only worth its keep for a file asked about often: closing it makes the process wait
// for the kernel to retire it (a grace period, up to about 20 ms, longer than the whole tagging
// of a short text). So the first `looksBeforeWatching` calls say "may have changed" without
// watching, and the watch is set at the call after them.
class FileWatch {
public:
    // About as many looks at a file's stamp as cost the wait at the watch's end.
    static constexpr long kLooksBeforeWatching = 10000;

    explicit FileWatch(std::string path, long looksBeforeWatching = kLooksBeforeWatching);
    ~FileWatch();
    FileWatch(const FileWatch&) = delete;
    FileWatch& operator=(const FileWatch&) = delete;

    // False only when nothing was noted since the last call that returned true; true at the
    // first call. After a true the caller looks at the file: the watch is set again before it
    // returns, so a change after that look is noted.
    bool mayHaveChanged();

private:
    // Watches the nearest existing directory on the way to the file; false when it cannot.
    bool watch();

    std::string path_;
    long looksLeft_;  // calls still answered "may have changed" before the watch is set
    int notes_ = -1;  // the inotify descriptor
    int watched_ = -1;
    std::chrono::steady_clock::time_point lookedAt_;
};

}  // namespace zphonetic::tagger
