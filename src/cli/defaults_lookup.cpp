#include "cli/defaults_lookup.h"

#include "cli/output_paths.h"

#include <climits>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool file_exists(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

} // namespace

bool executable_directory(std::string& dir) {
    char target[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", target, sizeof target - 1);
    if (length <= 0) return false;
    const std::string path(target, static_cast<std::size_t>(length));
    const std::size_t sep = path.find_last_of('/');
    if (sep == std::string::npos) return false;
    dir = path.substr(0, sep);
    return true;
}

std::string found_defaults_file() {
    std::string dir;
    if (!executable_directory(dir)) return {};
    const std::string path = dir + "/sonalyx-defaults.cfg";
    return path.size() <= kMaxPathLength && file_exists(path) ? path : std::string();
}

bool load_run_defaults(const char* defaults_cfg_path, SettingsFile& out, std::string& message) {
    if (defaults_cfg_path) {
        if (load_defaults_file(defaults_cfg_path, out)) return true;
        message = std::string("error: --defaults-cfg '") + defaults_cfg_path +
                  "' does not exist or could not be parsed\n";
        return false;
    }
    // A missing file next to the executable is not an error; an unloadable one is.
    const std::string path = found_defaults_file();
    if (path.empty() || load_defaults_file(path, out)) return true;
    message = "error: failed to read or parse sonalyx-defaults.cfg\n";
    return false;
}
