// SPDX-License-Identifier: MIT
#pragma once

// Where the teacher's own readings file is, and reading and writing it whole.

#include <cstdint>
#include <optional>
#include <string>

#include "ReadingsFile.h"

namespace zphonetic::tagger {

// The environment variables that choose for one run of a program: another readings file (tests
// use it), and the tones over the file's choice ("taught" or "original").
inline constexpr char kReadingsFileVariable[] = "ZPHONETIC_READINGS_FILE";
inline constexpr char kTonesVariable[] = "ZPHONETIC_TONES";

// The readings file: $ZPHONETIC_READINGS_FILE when it is set and not empty, else
// $XDG_CONFIG_HOME/zphonetic/readings.txt when XDG_CONFIG_HOME is an absolute path, else
// $HOME/.config/zphonetic/readings.txt; "" when HOME is not set either.
std::string ownReadingsPath();

// The tones $ZPHONETIC_TONES chooses, or nothing when it is unset or names no tones.
std::optional<Tones> tonesFromEnvironment();

// What tells one version of a file from another: writing it, renaming another file over it or
// removing it changes its stamp.
struct FileStamp {
    bool exists = false;
    uint64_t device = 0, inode = 0, size = 0;
    int64_t modified = 0, changed = 0;  // nanoseconds since the epoch
    bool operator==(const FileStamp& other) const;
    bool operator!=(const FileStamp& other) const { return !(*this == other); }
};
FileStamp stampOf(const std::string& path);

// The largest readings file that is read (a hundred thousand words fit in it).
constexpr uint64_t kMaxReadingsFileSize = 4u << 20;

struct LoadedReadings {
    ReadingsFile file;  // empty when the file is missing or not read
    FileStamp stamp;    // of the file read
    std::string error;  // why an existing file was not read ("larger than 4 MB"), else ""
};

// Reads the readings file at `path`. A missing file reads as an empty one, without an error;
// so does one that is not a regular file, is larger than kMaxReadingsFileSize or cannot be
// read, with the error. Never blocks on a pipe or device.
LoadedReadings loadReadingsFile(const std::string& path);

// Writes `file` to `path` whole: the directory made when missing, the bytes written to a new
// file beside it and renamed over it, so that a failure leaves the file as it was. Returns "" on
// success, else what went wrong ("cannot be written (No space left on device)").
std::string saveReadingsFile(const std::string& path, const ReadingsFile& file);

}  // namespace zphonetic::tagger
