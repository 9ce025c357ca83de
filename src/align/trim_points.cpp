#include "align/trim_points.h"

#include "align/bounded_text.h"
#include "align/sync_tone.h"
#include "audio/audio.h"

#include <limits>

namespace {

// One formatted error line. 1024 bytes hold even two of the longest "%.2f" numbers (about 310
// digits each) that an absurd PSR threshold setting could bring.
template <typename... Values> std::string formatted_line(const char* format, Values... values) {
    BoundedText line = bounded_text(1024);
    bounded_append(line, format, values...);
    return std::string(bounded_view(line));
}

// Why an occurrence was not accepted, tested in this order: nothing searchable, a PSR below the
// threshold, then a match that does not resemble the tone.
std::string not_found_line(const SyncDetection& found, const char* which, double psr_threshold) {
    if (found.channel < 0) return formatted_line("error: sync tone not detected (%s)\n", which);
    if (found.psr < psr_threshold) {
        return formatted_line("error: PSR below threshold (%s): got %.2f, need %.2f\n", which,
                              found.psr, psr_threshold);
    }
    return formatted_line("error: sync tone not detected (%s): the strongest match does not "
                          "resemble the sync tone (similarity %.2f, need %.2f)\n",
                          which, found.similarity, kSyncSimilarityFloor);
}

bool search(const WavFile& wav, std::size_t start, std::size_t window, double psr_threshold,
            const char* which, SyncDetection& found, std::string& error) {
    found = find_sync_tone(wav, start, window, psr_threshold, kSyncSimilarityFloor);
    if (found.found) return true;
    error = not_found_line(found, which, psr_threshold);
    return false;
}

} // namespace

SyncSearchWindow sync_search_window(double seconds, std::uint32_t sample_rate,
                                    std::size_t file_frames) {
    SyncSearchWindow window;
    const double wanted = round_half_away_from_zero(seconds * sample_rate);
    // A negative setting asks for no frames at all; one beyond size_t saturates.
    constexpr auto most = static_cast<double>(std::numeric_limits<std::size_t>::max());
    if (wanted > 0.0) {
        window.requested = wanted >= most ? std::numeric_limits<std::size_t>::max()
                                          : static_cast<std::size_t>(wanted);
    }
    const std::size_t half = file_frames / 2;
    window.capped = window.requested > half;
    window.frames = window.capped ? half : window.requested;
    return window;
}

bool locate_trim_points(const WavFile& wav, std::size_t window, double psr_threshold,
                        TrimPoints& points, std::string& error) {
    if (!search(wav, 0, window, psr_threshold, "leading", points.leading, error)) return false;
    const std::size_t trailing_start = wav.frames > window ? wav.frames - window : 0;
    if (!search(wav, trailing_start, window, psr_threshold, "trailing", points.trailing, error)) {
        return false;
    }
    points.sync_point =
        static_cast<std::size_t>(points.leading.position) + sync_template_length(wav.sample_rate);
    points.trim_point = static_cast<std::size_t>(points.trailing.position);
    if (points.trim_point > points.sync_point) return true;
    error = formatted_line("error: trailing occurrence (sample %zu) is not after the leading "
                           "occurrence ends (sample %zu) -- check the input file\n",
                           points.trim_point, points.sync_point);
    return false;
}
