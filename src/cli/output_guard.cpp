#include "cli/output_guard.h"

#include "audio/audio.h"
#include "cli/defaults_lookup.h"

#include <climits>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

struct FileIdentity {
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    std::string place; // for a path that does not exist: where it would be made
};

std::string absolute(const std::string& path) {
    if (!path.empty() && path.front() == '/') return path;
    char cwd[PATH_MAX];
    return ::getcwd(cwd, sizeof cwd) != nullptr ? std::string(cwd) + "/" + path : path;
}

// Where a path that does not exist would be made: its deepest existing folder resolved through
// links, followed by the rest of its components with "." dropped and ".." taken back.
std::string place_of(const std::string& path) {
    std::string rest = absolute(path);
    std::vector<std::string> tail;
    std::string base;
    while (base.empty()) {
        const std::size_t sep = rest.find_last_of('/');
        if (sep == std::string::npos) return path;
        tail.push_back(rest.substr(sep + 1));
        rest.resize(sep);
        base = canonical_path(rest.empty() ? "/" : rest);
    }
    for (auto part = tail.rbegin(); part != tail.rend(); ++part) {
        if (part->empty() || *part == ".") continue;
        if (*part == "..") {
            const std::size_t sep = base.find_last_of('/');
            base.resize(sep == 0 ? 1 : sep);
            continue;
        }
        if (base.back() != '/') base += '/';
        base += *part;
    }
    return base;
}

FileIdentity identify(const std::string& path) {
    FileIdentity identity;
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0) {
        identity.exists = true;
        identity.device = info.st_dev;
        identity.inode = info.st_ino;
    } else {
        identity.place = place_of(path);
    }
    return identity;
}

bool same_file(const FileIdentity& a, const FileIdentity& b) {
    if (a.exists != b.exists) return false;
    if (a.exists) return a.device == b.device && a.inode == b.inode;
    return a.place == b.place;
}

} // namespace

bool outputs_spare_inputs(std::span<const RunPath> outputs, std::span<const RunPath> inputs,
                          std::string& message) {
    std::vector<FileIdentity> input_ids;
    for (const RunPath& input : inputs)
        input_ids.push_back(identify(input.path));
    std::vector<FileIdentity> output_ids;
    for (const RunPath& output : outputs) {
        const FileIdentity id = identify(output.path);
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            if (!same_file(id, input_ids[i])) continue;
            message = "error: " + output.name + " '" + output.path + "' is the " + inputs[i].name +
                      "; refusing to overwrite it\n";
            return false;
        }
        for (std::size_t i = 0; i < output_ids.size(); ++i) {
            if (!same_file(id, output_ids[i])) continue;
            message = "error: " + output.name + " '" + output.path + "' and " + outputs[i].name +
                      " '" + outputs[i].path + "' are the same file; refusing to write one over " +
                      "the other\n";
            return false;
        }
        output_ids.push_back(id);
    }
    return true;
}

bool run_outputs_allowed(std::span<const RunPath> outputs, std::vector<RunPath> inputs,
                         const char* config_path, const char* defaults_cfg_path) {
    if (config_path) inputs.push_back({config_path, "--config file"});
    if (defaults_cfg_path) {
        inputs.push_back({defaults_cfg_path, "--defaults-cfg file"});
    } else if (std::string found = found_defaults_file(); !found.empty()) {
        inputs.push_back({std::move(found), "defaults file"});
    }
    std::string message;
    if (outputs_spare_inputs(outputs, inputs, message)) return true;
    std::fputs(message.c_str(), stderr);
    return false;
}
