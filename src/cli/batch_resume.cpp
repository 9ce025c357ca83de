#include "cli/batch_resume.h"

#include <optional>
#include <sys/stat.h>

namespace {

std::optional<timespec> modified(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return std::nullopt;
    return info.st_mtim;
}

bool later(const timespec& a, const timespec& b) {
    return a.tv_sec != b.tv_sec ? a.tv_sec > b.tv_sec : a.tv_nsec > b.tv_nsec;
}

} // namespace

bool outputs_newer_than(std::span<const std::string> outputs,
                        std::span<const std::string> sources) {
    for (const std::string& output : outputs) {
        const auto written = modified(output);
        if (!written) return false;
        for (const std::string& source : sources) {
            const auto changed = modified(source);
            if (!changed || !later(*written, *changed)) return false;
        }
    }
    return true;
}
