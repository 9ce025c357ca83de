// libFuzzer harness for the plot command, run in-process on one WAV file per input (built as
// command_run.h describes). The run is "plot --input <file> --out <folder>/page.html", or with bit
// 6 of byte 0 "--out <folder>/plots/" (a folder made for the page, which is then named after the
// input), with --json when the input asks for it. The status must be 0 or 1. On 1 the output
// folder must be empty: the page and the JSON are put in place together or not at all, and no
// temporary file stays. On 0 it must hold exactly the files asked for; the page must be a whole
// HTML document and the JSON a flat object giving the input's sample rate, channel count and
// frame count. An allocation sized by a header field (sample rate, channel count, declared sizes)
// shows up as libFuzzer's out-of-memory report under -rss_limit_mb.
#include "audio/wav_reader.h"
#include "cli/commands.h"
#include "command_run.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

// Where the page and the JSON land: the folder they are in, and their names without extension.
struct PlotOutputs {
    std::string out_arg;
    std::string folder;
    std::string stem;
};

PlotOutputs plot_outputs(const RunFolder& folder, bool into_folder) {
    if (into_folder) return {folder.out + "/plots/", folder.out + "/plots", "input"};
    return {folder.out + "/page.html", folder.out, "page"};
}

void check_page(const std::string& path) {
    const std::string page = read_whole_file(path);
    if (page.rfind("<!doctype html>", 0) != 0 || !page.ends_with("</html>\n")) __builtin_trap();
}

void expect_entry(const std::string& json, const std::string& key, std::size_t value) {
    const std::string line = "\"" + key + "\": " + std::to_string(value) + ",\n";
    if (json.find(line) == std::string::npos) __builtin_trap();
}

void check_json(const std::string& path, const std::string& input_path) {
    const std::string json = read_whole_file(path);
    if (json.rfind("{\n", 0) != 0 || !json.ends_with("}\n")) __builtin_trap();
    WavFile input;
    if (!wav_read(input_path.c_str(), input)) __builtin_trap();
    expect_entry(json, "sample_rate", input.sample_rate);
    expect_entry(json, "channels", input.channels);
    expect_entry(json, "frame_count", input.frames);
}

void check_outputs(const RunFolder& folder, const PlotOutputs& outputs, bool with_json) {
    const std::string html = outputs.stem + ".html";
    const std::string json = outputs.stem + ".json";
    if (outputs.folder != folder.out) expect_entries(folder.out, {"plots"});
    if (with_json) {
        expect_entries(outputs.folder, {html, json});
        check_json(outputs.folder + "/" + json, folder.input);
    } else {
        expect_entries(outputs.folder, {html});
    }
    check_page(outputs.folder + "/" + html);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    silence_standard_output();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const RunFolder& folder = run_folder();
    const WavPlan plan = read_plan(data, size);
    if (plan.raw) {
        write_whole_file(folder.input, {data, size});
    } else {
        write_whole_file(folder.input,
                         wav_file_bytes(plan.fields, plan_payload(plan.fields, data, size)));
    }
    const PlotOutputs outputs = plot_outputs(folder, plan.choice);
    std::vector<std::string> args = {"sonalyx",    "plot",  "--input",
                                     folder.input, "--out", outputs.out_arg};
    if (plan.second_output) args.push_back("--json");
    if (run_command(run_plot_command, args) == 0) {
        check_outputs(folder, outputs, plan.second_output);
    } else {
        expect_entries(folder.out, {});
    }
    empty_folder(folder.out);
    return 0;
}
