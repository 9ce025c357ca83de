#include "audio/file_replacement.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Attempts at a free temporary name before giving up.
constexpr int kNameAttempts = 100;

std::string folder_of(const std::string& path) {
    const std::size_t sep = path.find_last_of('/');
    if (sep == std::string::npos) return ".";
    return sep == 0 ? "/" : path.substr(0, sep);
}

// A named temporary file for folders that cannot hold a nameless one. mkstemp makes it private
// to its owner; it gets the permissions any new file would get.
bool open_named(FileReplacement& file) {
    file.temp = file.target + ".sonalyx-XXXXXX";
    file.fd = ::mkstemp(file.temp.data());
    if (file.fd < 0) {
        file.temp.clear();
        return false;
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    if (::fchmod(file.fd, 0666 & ~mask) != 0) file.failed = true;
    return true;
}

// Gives the nameless file a temporary name beside the target, through its /proc link.
bool name_unnamed(FileReplacement& file) {
    const std::string source = "/proc/self/fd/" + std::to_string(file.fd);
    const std::string stem = file.target + ".sonalyx-" + std::to_string(::getpid()) + "-";
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        std::string name = stem + std::to_string(attempt);
        if (::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            file.temp = std::move(name);
            return true;
        }
        if (errno != EEXIST) return false;
    }
    return false;
}

// Opens a device or FIFO for writing where it is; a FIFO with no reader fails rather than waits.
bool open_in_place(FileReplacement& file) {
    file.in_place = true;
    file.fd = ::open(file.target.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (file.fd < 0) return false;
    const int flags = ::fcntl(file.fd, F_GETFL);
    if (flags == -1 || ::fcntl(file.fd, F_SETFL, flags & ~O_NONBLOCK) == -1) file.failed = true;
    return true;
}

} // namespace

bool replacement_open(const std::string& path, FileReplacement& file, bool allow_unnamed) {
    file.path = path;
    file.target = path;
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0) {
        if (S_ISDIR(info.st_mode)) return false;
        if (!S_ISREG(info.st_mode)) return open_in_place(file);
        struct stat link_info {};
        if (::lstat(path.c_str(), &link_info) == 0 && S_ISLNK(link_info.st_mode))
            file.target = canonical_path(path);
        if (file.target.empty()) return false;
    }
    if (allow_unnamed)
        file.fd = ::open(folder_of(file.target).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    if (file.fd >= 0) {
        file.unnamed = true;
        return true;
    }
    return open_named(file);
}

bool replacement_write(FileReplacement& file, std::span<const std::uint8_t> bytes) {
    if (file.fd < 0 || file.failed) return false;
    while (!bytes.empty()) {
        const ssize_t written = ::write(file.fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) {
            file.failed = true;
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

bool replacement_write_text(FileReplacement& file, std::string_view text) {
    return replacement_write(file,
                             {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

bool replacement_seal(FileReplacement& file) {
    if (file.fd < 0 || file.failed || (file.unnamed && !name_unnamed(file))) {
        replacement_abandon(file);
        return false;
    }
    const int fd = file.fd;
    file.fd = -1;
    // close reports write errors that the file system kept back until now.
    if (::close(fd) == 0) return true;
    replacement_abandon(file);
    return false;
}

bool replacement_place(FileReplacement& file) {
    if (file.in_place) return true;
    if (file.temp.empty() || std::rename(file.temp.c_str(), file.target.c_str()) != 0) {
        replacement_abandon(file);
        return false;
    }
    file.temp.clear();
    return true;
}

bool replacement_commit(FileReplacement& file) {
    return replacement_seal(file) && replacement_place(file);
}

void replacement_abandon(FileReplacement& file) {
    if (file.fd >= 0) ::close(file.fd);
    file.fd = -1;
    if (!file.temp.empty()) ::unlink(file.temp.c_str());
    file.temp.clear();
}

bool write_file_atomically(const std::string& path, std::string_view content) {
    FileReplacement file;
    if (!replacement_open(path, file)) return false;
    replacement_write_text(file, content);
    return replacement_commit(file);
}

std::string canonical_path(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr),
                                                               &std::free);
    return resolved ? std::string(resolved.get()) : std::string();
}
