#include "report/plot_page.h"

#include "audio/file_replacement.h"
#include "results/json_entries.h"

namespace {

// The whole plot JSON text, NUL included, fits in this many bytes.
constexpr std::size_t kPlotJsonCapacity = 1024;

bool build_plot_json(const std::string& input_path, const WavFile& file, FlatJson& json) {
    const double duration =
        static_cast<double>(file.frames) / static_cast<double>(file.sample_rate);
    return json_open(json, kPlotJsonCapacity) && json_text(json, "status", "plotted") &&
           json_text(json, "input_file", input_path) &&
           json_int(json, "sample_rate", static_cast<int>(file.sample_rate)) &&
           json_int(json, "channels", static_cast<int>(file.channels)) &&
           json_int(json, "bit_depth", static_cast<int>(wav_format_bits(file.format))) &&
           json_text(json, "sample_format",
                     wav_format_is_float(file.format) ? "float" : "integer") &&
           json_long(json, "frame_count", static_cast<long>(file.frames)) &&
           json_real(json, "duration_seconds", duration, EntryEnd::last) && json_close(json);
}

} // namespace

bool write_plot_json(const std::string& path, const std::string& input_path, const WavFile& file) {
    FlatJson json;
    return build_plot_json(input_path, file, json) && write_file_atomically(path, json.text);
}
