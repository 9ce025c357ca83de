#include "cli/batch_merge.h"

#include "cli/batch_outputs.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace {

// The shard a file name such as "shard-2-of-5.json" stands for.
std::optional<Shard> shard_of_file(const std::string& name) {
    const std::string head = "shard-";
    const std::string tail = ".json";
    const std::size_t of = name.find("-of-");
    if (name.rfind(head, 0) != 0 || of == std::string::npos || name.size() < tail.size() ||
        name.compare(name.size() - tail.size(), tail.size(), tail) != 0)
        return std::nullopt;
    const std::string counted = name.substr(head.size(), of - head.size()) + "/" +
                                name.substr(of + 4, name.size() - tail.size() - of - 4);
    const auto shard = parse_shard(counted);
    if (!shard || shard_file_name(*shard) != name) return std::nullopt;
    return shard;
}

// The shard files in the folder by shard index; false when they disagree on the shard count.
bool find_shards(const std::string& dir, std::map<std::size_t, Shard>& found) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(dir, error)) {
        const auto shard = shard_of_file(entry.path().filename().string());
        if (!shard) continue;
        if (!found.empty() && found.begin()->second.count != shard->count) {
            std::fprintf(stderr, "error: '%s' holds shard files of %zu and of %zu shards\n",
                         dir.c_str(), found.begin()->second.count, shard->count);
            return false;
        }
        found[shard->index] = *shard;
    }
    if (!found.empty()) return true;
    std::fprintf(stderr, "error: no shard files (shard-K-of-N.json) in '%s'\n", dir.c_str());
    return false;
}

bool read_shard(const std::string& path, std::vector<BatchRow>& rows) {
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::string error;
    if (read_batch_rows_json(text, rows, error)) return true;
    std::fprintf(stderr, "error: could not read '%s': %s\n", path.c_str(), error.c_str());
    return false;
}

// Row r of shard k is pair k + r * N of the manifest.
std::vector<BatchRow> interleaved(const std::vector<std::vector<BatchRow>>& shards) {
    std::vector<BatchRow> rows;
    for (std::size_t r = 0;; ++r) {
        bool any = false;
        for (const std::vector<BatchRow>& shard : shards) {
            if (r >= shard.size()) continue;
            rows.push_back(shard[r]);
            any = true;
        }
        if (!any) return rows;
    }
}

} // namespace

int run_batch_merge(const BatchOptions& options) {
    const std::string dir = batch_folder(options.merge_dir);
    std::map<std::size_t, Shard> found;
    if (!find_shards(dir, found)) return 1;
    const std::size_t count = found.begin()->second.count;
    std::vector<std::vector<BatchRow>> shards(count);
    double seconds = 0.0;
    for (std::size_t k = 0; k < count; ++k) {
        const Shard shard{k, count};
        const std::string path = dir + "/" + shard_file_name(shard);
        if (found.count(k) == 0) {
            std::fprintf(stderr, "warning: shard %zu of %zu is missing (no '%s')\n", k, count,
                         path.c_str());
            continue;
        }
        if (!read_shard(path, shards[k])) return 1;
    }
    const std::vector<BatchRow> rows = interleaved(shards);
    for (const BatchRow& row : rows)
        seconds += row.seconds;
    const std::string suite = options.manifest_path
                                  ? std::filesystem::path(options.manifest_path).filename().string()
                                  : std::string("batch");
    std::string message;
    if (!write_batch_outputs(dir, suite, rows, seconds, message)) {
        std::fputs(message.c_str(), stderr);
        return 1;
    }
    print_batch_written(batch_outputs_named(dir, options.json), rows);
    if (found.size() < count) return 1;
    return options.exit_code && count_verdicts(rows).pass < rows.size() ? 2 : 0;
}
