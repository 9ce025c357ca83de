// Writes a batch index page for the browser tests from pages analyze has already written:
//   batch_index_writer <dir> <id>=<seconds>...
// Each pair's row comes from <dir>/<id>.json and links <dir>/<id>.html; the page is
// <dir>/index.html.
#include "report/report.h"
#include "results/results.h"

#include <charconv>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <system_error>
#include <vector>

namespace {

bool read_file(const std::string& path, std::string& text) {
    std::ifstream in(path, std::ios::binary);
    text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return static_cast<bool>(in) || in.eof();
}

bool row_of(const std::string& dir, const std::string& argument, BatchRow& row) {
    const std::size_t equals = argument.find('=');
    if (equals == std::string::npos) return false;
    row.id = argument.substr(0, equals);
    const char* seconds = argument.c_str() + equals + 1;
    const char* end = argument.c_str() + argument.size();
    const auto [stop, failure] = std::from_chars(seconds, end, row.seconds);
    if (failure != std::errc{} || stop != end) return false;
    row.report = row.id + ".html";
    std::string json;
    return read_file(dir + "/" + row.id + ".json", json) && batch_row_from_results_json(json, row);
}

} // namespace

int main(int argc, char** argv) {
    const std::span<char*> args(argv, static_cast<std::size_t>(argc));
    if (args.size() < 2) {
        std::fputs("usage: batch_index_writer <dir> <id>=<seconds>...\n", stderr);
        return 1;
    }
    const std::string dir = args[1];
    std::vector<BatchRow> rows;
    double total = 0.0;
    for (const char* argument : args.subspan(2)) {
        BatchRow row;
        if (!row_of(dir, argument, row)) {
            std::fprintf(stderr, "no results JSON for '%s'\n", argument);
            return 1;
        }
        total += row.seconds;
        rows.push_back(row);
    }
    std::string page;
    std::ofstream out(dir + "/index.html", std::ios::binary);
    if (!write_batch_index_page(rows, total, page) || !(out << page)) return 1;
    return 0;
}
