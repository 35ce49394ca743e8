// SPDX-License-Identifier: MIT
#include "FileWatch.h"

#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace zphonetic::tagger {
namespace {

// What changes a file in its directory, or the directory itself, or (in a directory above it) the
// way to it.
constexpr uint32_t kChanges = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY |
                              IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;

// Changes the kernel may not note are looked for at least this often.
constexpr std::chrono::seconds kLookAgain{1};

std::string parentOf(const std::string& path) {
    const auto slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

FileWatch::FileWatch(std::string path, long looksBeforeWatching)
    : path_(std::move(path)), looksLeft_(looksBeforeWatching) {}

FileWatch::~FileWatch() {
    if (notes_ >= 0) ::close(notes_);
}

bool FileWatch::watch() {
    if (notes_ < 0 || path_.empty()) return false;
    int watching = -1;
    // A link is followed to a file whose own directory is elsewhere: looked at every time.
    struct stat st {};
    if (::lstat(path_.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) {
        for (std::string directory = parentOf(path_);; directory = parentOf(directory)) {
            watching = ::inotify_add_watch(notes_, directory.c_str(), kChanges);
            if (watching >= 0 || (errno != ENOENT && errno != ENOTDIR) || directory == "/" ||
                directory == ".")
                break;
        }
    }
    // Watching the same directory again gives the same watch; another one replaces it.
    if (watched_ >= 0 && watched_ != watching) ::inotify_rm_watch(notes_, watched_);
    watched_ = watching;
    return watched_ >= 0;
}

bool FileWatch::mayHaveChanged() {
    if (looksLeft_ > 0) {
        --looksLeft_;
        return true;
    }
    if (looksLeft_ == 0) {
        looksLeft_ = -1;
        notes_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    }
    const auto now = std::chrono::steady_clock::now();
    bool noted = watched_ < 0 || now - lookedAt_ >= kLookAgain;
    // Every note is read, so that the next call starts from none. Which file a note names does
    // not matter (looking at the file once more costs little); only the end of a watch this
    // object replaced itself is no change.
    // Asking how many bytes of notes wait is the cheapest call there is to the descriptor (a
    // read that finds none also waits on its queue's lock); they are read only when some do.
    int waiting = 0;
    if (notes_ >= 0 && ::ioctl(notes_, FIONREAD, &waiting) != 0) waiting = 1;
    alignas(struct inotify_event) char buffer[4096];
    for (ssize_t n; waiting > 0 && (n = ::read(notes_, buffer, sizeof buffer)) > 0;) {
        for (ssize_t at = 0; at < n;) {
            const auto* note = reinterpret_cast<const struct inotify_event*>(buffer + at);
            if (!(note->mask & IN_IGNORED) || note->wd == watched_) noted = true;
            at += static_cast<ssize_t>(sizeof(struct inotify_event) + note->len);
        }
    }
    if (!noted) return false;
    watch();
    lookedAt_ = now;
    return true;
}

}  // namespace zphonetic::tagger
