// SPDX-License-Identifier: MIT
#include "MappedFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Container.h"

namespace zphonetic::tagger {
namespace {

// An empty file maps to this so that data() is never null.
const uint8_t kEmpty[1] = {0};

}  // namespace

MappedFile::MappedFile(const std::string& path) {
    // Without blocking: opening a FIFO or a device for reading would wait for a writer. Only a
    // regular file is mapped.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) throw FormatError(path + ": " + std::strerror(errno));
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        throw FormatError(path + ": not a regular file");
    }
    size_ = static_cast<size_t>(st.st_size);
    if (size_ == 0) {
        ::close(fd);
        data_ = kEmpty;
        return;
    }
    void* p = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, fd, 0);
    const int mapError = errno;
    ::close(fd);
    if (p == MAP_FAILED) throw FormatError(path + ": cannot map: " + std::strerror(mapError));
    data_ = static_cast<const uint8_t*>(p);
}

MappedFile::~MappedFile() {
    if (size_ != 0) ::munmap(const_cast<uint8_t*>(data_), size_);
}

}  // namespace zphonetic::tagger
