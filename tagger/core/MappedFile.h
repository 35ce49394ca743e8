// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zphonetic::tagger {

// A whole file mapped read-only into memory; unmapped when destroyed.
class MappedFile {
public:
    // Throws FormatError("<path>: <reason>") when the file cannot be opened or mapped, or is not
    // a regular file ("<path>: not a regular file"); a FIFO or device is refused without waiting.
    explicit MappedFile(const std::string& path);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    const uint8_t* data() const { return data_; }
    size_t size() const { return size_; }

private:
    const uint8_t* data_ = nullptr;
    size_t size_ = 0;
};

}  // namespace zphonetic::tagger
