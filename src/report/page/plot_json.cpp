#include "report/page/plot_page.h"

#include "audio/audio.h"
#include "results/results.h"

namespace {

bool write_plot_entries(const std::string& input_path, const WavFile& file, FlatJson& json) {
    const double duration =
        static_cast<double>(file.frames) / static_cast<double>(file.sample_rate);
    return json_open(json) && json_text(json, "status", "plotted") &&
           json_text(json, "input_file", input_path) &&
           json_int(json, "sample_rate", static_cast<int>(file.sample_rate)) &&
           json_int(json, "channels", static_cast<int>(file.channels)) &&
           json_int(json, "bit_depth", static_cast<int>(wav_format_bits(file.format))) &&
           json_text(json, "sample_format",
                     wav_format_is_float(file.format) ? "float" : "integer") &&
           json_long(json, "frame_count", static_cast<long>(file.frames)) &&
           json_real(json, "duration_seconds", duration, EntryEnd::last) && json_close(json);
}

// The whole text, however long the input path; false only when memory ran out (or, an internal
// fault, the duration is not finite).
bool build_plot_json(const std::string& input_path, const WavFile& file, FlatJson& json) {
    return json_guard_memory([&] { return write_plot_entries(input_path, file, json); });
}

} // namespace

bool write_plot_json(FileReplacement& out, const std::string& input_path, const WavFile& file) {
    FlatJson json;
    return build_plot_json(input_path, file, json) && replacement_write_text(out, json.text);
}
