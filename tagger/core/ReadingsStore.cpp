// SPDX-License-Identifier: MIT
#include "ReadingsStore.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace zphonetic::tagger {
namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

FileStamp stampFrom(const struct stat& st) {
    FileStamp stamp;
    stamp.exists = true;
    stamp.device = static_cast<uint64_t>(st.st_dev);
    stamp.inode = static_cast<uint64_t>(st.st_ino);
    stamp.size = static_cast<uint64_t>(st.st_size);
    stamp.modified = int64_t{st.st_mtim.tv_sec} * 1000000000 + st.st_mtim.tv_nsec;
    stamp.changed = int64_t{st.st_ctim.tv_sec} * 1000000000 + st.st_ctim.tv_nsec;
    return stamp;
}

std::string reason(const char* what, int error) {
    return std::string(what) + " (" + std::strerror(error) + ")";
}

// Closes a descriptor on every path.
struct Descriptor {
    int fd;
    ~Descriptor() {
        if (fd >= 0) ::close(fd);
    }
};

bool writeAll(int fd, const std::string& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

}  // namespace

std::string ownReadingsPath() {
    if (std::string file = environment(kReadingsFileVariable); !file.empty()) return file;
    // A relative XDG_CONFIG_HOME is no configuration directory at all: it is ignored, so the file
    // never depends on the directory a program happens to run in.
    if (const std::string config = environment("XDG_CONFIG_HOME");
        !config.empty() && config[0] == '/') {
        return config + "/zphonetic/readings.txt";
    }
    if (const std::string home = environment("HOME"); !home.empty()) {
        return home + "/.config/zphonetic/readings.txt";
    }
    return {};
}

std::optional<Tones> tonesFromEnvironment() {
    return parseTones(environment(kTonesVariable));
}

bool FileStamp::operator==(const FileStamp& other) const {
    return exists == other.exists && device == other.device && inode == other.inode &&
           size == other.size && modified == other.modified && changed == other.changed;
}

FileStamp stampOf(const std::string& path) {
    struct stat st {};
    if (path.empty() || ::stat(path.c_str(), &st) != 0) return {};
    return stampFrom(st);
}

LoadedReadings loadReadingsFile(const std::string& path) {
    LoadedReadings loaded;
    if (path.empty()) return loaded;
    // Non-blocking, so that a pipe put where the file should be cannot hang the caller (the
    // dictionaries open on a GUI thread); it is refused below as not a regular file.
    Descriptor in{::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    if (in.fd < 0) {
        if (errno != ENOENT) {
            loaded.error = reason("cannot be read", errno);
            // Stamped, so that the same refusal is not read (and reported) again and again.
            loaded.stamp = stampOf(path);
        }
        return loaded;
    }
    struct stat st {};
    if (::fstat(in.fd, &st) != 0) {
        loaded.error = reason("cannot be read", errno);
        return loaded;
    }
    loaded.stamp = stampFrom(st);
    if (!S_ISREG(st.st_mode)) {
        loaded.error = "not a regular file";
        return loaded;
    }
    if (static_cast<uint64_t>(st.st_size) > kMaxReadingsFileSize) {
        loaded.error = "larger than " + std::to_string(kMaxReadingsFileSize >> 20) + " MB";
        return loaded;
    }
    std::string bytes(static_cast<size_t>(st.st_size), '\0');
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::read(in.fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) {
            loaded.error = reason("cannot be read", errno);
            return loaded;
        }
        if (n == 0) break;  // shorter than it was a moment ago: what is there is the file
        done += static_cast<size_t>(n);
    }
    bytes.resize(done);
    loaded.file = ReadingsFile(bytes);
    return loaded;
}

std::string saveReadingsFile(const std::string& path, const ReadingsFile& file) {
    if (path.empty()) return "no readings file: neither HOME nor XDG_CONFIG_HOME is set";
    std::error_code error;
    // A link to the file elsewhere (a folder of settings kept in sync) stays a link.
    std::filesystem::path target = std::filesystem::canonical(path, error);
    if (error) target = path;
    error.clear();
    if (target.has_parent_path()) {
        std::filesystem::create_directories(target.parent_path(), error);
        if (error) return "cannot make its directory (" + error.message() + ")";
    }
    std::string temporary = target.string() + ".XXXXXX";
    Descriptor out{::mkostemp(temporary.data(), O_CLOEXEC)};
    if (out.fd < 0) return reason("cannot be written", errno);
    // The file keeps its permissions; a new one gets the usual ones.
    struct stat st {};
    const mode_t mode = ::stat(target.c_str(), &st) == 0 ? (st.st_mode & 07777) : 0644;
    const bool written =
        ::fchmod(out.fd, mode) == 0 && writeAll(out.fd, file.text()) && ::fsync(out.fd) == 0;
    const int writeError = errno;
    if (!written || ::rename(temporary.c_str(), target.c_str()) != 0) {
        const int failure = written ? errno : writeError;
        ::unlink(temporary.c_str());
        return reason("cannot be written", failure);
    }
    return {};
}

}  // namespace zphonetic::tagger
