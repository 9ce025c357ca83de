#include "audio/output_set.h"

#include <cstdio>
#include <unistd.h>
#include <vector>

namespace {

void abandon_all(OutputSet& set) {
    for (FileReplacement& file : set.files)
        replacement_abandon(file);
}

// A target replaced during the commit, with a second name for its earlier contents while the
// rest of the set is put in place ("" when there were none, or they could not be kept).
struct Placed {
    const FileReplacement* file = nullptr;
    std::string earlier;
};

// A second name beside the target for its earlier contents; "" when there is no earlier file or
// the folder cannot hold a second name for it.
std::string keep_earlier(const FileReplacement& file) {
    if (file.in_place) return {};
    const std::string name = file.temp + ".earlier";
    return ::link(file.target.c_str(), name.c_str()) == 0 ? name : std::string();
}

// Takes back what the commit had done: earlier contents return, new files go.
void restore(const std::vector<Placed>& placed) {
    for (const Placed& p : placed) {
        if (p.file->in_place) continue; // a device or FIFO keeps what it was sent
        if (p.earlier.empty()) {
            ::unlink(p.file->target.c_str());
        } else {
            std::rename(p.earlier.c_str(), p.file->target.c_str());
        }
    }
}

} // namespace

FileReplacement* output_set_open(OutputSet& set, const std::string& path) {
    FileReplacement& file = set.files.emplace_back();
    return replacement_open(path, file) ? &file : nullptr;
}

bool output_set_commit(OutputSet& set, std::string& failed_path) {
    for (FileReplacement& file : set.files) {
        if (replacement_seal(file)) continue;
        failed_path = file.path;
        abandon_all(set);
        return false;
    }
    std::vector<Placed> placed;
    for (FileReplacement& file : set.files) {
        const std::string earlier = keep_earlier(file);
        if (replacement_place(file)) {
            placed.push_back({&file, earlier});
            continue;
        }
        failed_path = file.path;
        if (!earlier.empty()) ::unlink(earlier.c_str());
        restore(placed);
        abandon_all(set);
        return false;
    }
    for (const Placed& p : placed)
        if (!p.earlier.empty()) ::unlink(p.earlier.c_str());
    return true;
}
