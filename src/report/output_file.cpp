#include "report/output_file.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool write_all(int fd, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(fd, content.data(), content.size());
        if (written <= 0) return false;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

bool write_file_atomically(const std::string& path, std::string_view content) {
    std::string temp = path + ".sonalyx-XXXXXX";
    const int fd = ::mkstemp(temp.data());
    if (fd < 0) return false;
    // mkstemp creates the file private to its owner; give it the usual permissions of a new file.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    const bool written = ::fchmod(fd, 0666 & ~mask) == 0 && write_all(fd, content);
    const bool closed = ::close(fd) == 0;
    if (written && closed && std::rename(temp.c_str(), path.c_str()) == 0) return true;
    ::unlink(temp.c_str());
    return false;
}
