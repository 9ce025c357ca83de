#include "cli/batch_outputs.h"

#include "audio/audio.h"
#include "report/report.h"

#include <cstdio>
#include <utility>
#include <vector>

namespace {

bool failed(const std::string& path, std::string& message) {
    message = "error: failed to write '" + path + "'\n";
    return false;
}

// Opens, fills and commits the files of one set; `texts` pairs each path with its contents.
bool write_set(const std::vector<std::pair<std::string, std::string>>& texts,
               std::string& message) {
    OutputSet set;
    std::vector<FileReplacement*> files;
    for (const auto& [path, text] : texts) {
        files.push_back(output_set_open(set, path));
        if (files.back() == nullptr) return failed(path, message);
    }
    for (std::size_t i = 0; i < texts.size(); ++i)
        if (!replacement_write_text(*files[i], texts[i].second))
            return failed(texts[i].first, message);
    std::string failed_path;
    return output_set_commit(set, failed_path) || failed(failed_path, message);
}

} // namespace

VerdictCounts count_verdicts(std::span<const BatchRow> rows) {
    VerdictCounts counts;
    for (const BatchRow& row : rows) {
        if (row.verdict == "PASS")
            ++counts.pass;
        else if (row.verdict == "FAIL")
            ++counts.fail;
        else
            ++counts.error;
    }
    return counts;
}

std::string verdict_summary(std::span<const BatchRow> rows) {
    const VerdictCounts counts = count_verdicts(rows);
    return std::to_string(rows.size()) + (rows.size() == 1 ? " pair: " : " pairs: ") +
           std::to_string(counts.pass) + " PASS, " + std::to_string(counts.fail) + " FAIL, " +
           std::to_string(counts.error) + " ERROR";
}

std::string batch_folder(const char* text) {
    std::string dir = text;
    while (dir.size() > 1 && dir.back() == '/')
        dir.pop_back();
    return dir;
}

void print_batch_written(const std::string& written, std::span<const BatchRow> rows) {
    std::printf("wrote %s (%s)\n", written.c_str(), verdict_summary(rows).c_str());
}

std::string batch_outputs_named(const std::string& out_dir, bool json) {
    return out_dir + "/index.html" + (json ? " + " + out_dir + "/summary.json" : "");
}

bool write_batch_outputs(const std::string& out_dir, const std::string& suite_name,
                         std::span<const BatchRow> rows, double total_seconds,
                         std::string& message) {
    std::string junit;
    std::string summary;
    std::string index;
    const std::string index_path = out_dir + "/index.html";
    if (!write_batch_junit(suite_name, rows, total_seconds, junit) ||
        !write_batch_rows_json(rows, total_seconds, summary) ||
        !write_batch_index_page(rows, total_seconds, index))
        return failed(index_path, message);
    return write_set({{index_path, index},
                      {out_dir + "/junit.xml", junit},
                      {out_dir + "/summary.json", summary}},
                     message);
}

bool write_shard_rows(const std::string& path, std::span<const BatchRow> rows, double total_seconds,
                      std::string& message) {
    std::string text;
    if (!write_batch_rows_json(rows, total_seconds, text)) return failed(path, message);
    return write_set({{path, text}}, message);
}
