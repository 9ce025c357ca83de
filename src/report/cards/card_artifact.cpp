// The Artifact Detection card: per channel the event counts, the flagged and excluded samples and
// the worst event with its severity, then the paragraph that explains minor events.
#include "report/cards/card_frame.h"
#include "report/cards/card_pieces.h"
#include "report/cards/cards.h"
#include "report/cards/check_status.h"
#include "report/cards/ref_only_note.h"

#include <cmath>

namespace {

// The worst event's severity: the whole-file figure when only the whole-file measure flagged it,
// else the local figure, else the mark of a silence or full-scale run.
bool append_severity_suffix(TextBuffer& page, const ArtifactChannelResult& c,
                            const ArtifactConfig& config) {
    const double global = c.worst_event_global_severity;
    const double local = c.worst_event_severity;
    if (global > config.min_global_severity.value && local <= config.min_severity.value) {
        if (global < 100000.0)
            return text_append_format(page, " &middot; %.0f&times; file-wide", global);
        const double exponent = std::floor(std::log10(global));
        return text_append_format(page, " &middot; %.1f&times;10<sup>%d</sup>&times; file-wide",
                                  global / std::pow(10.0, exponent), static_cast<int>(exponent));
    }
    if (local > 1.0)
        return text_append_format(
            page, local < 100.0 ? " &middot; %.1f&times;" : " &middot; %.0f&times;", local);
    return text_append(page, " &middot; silence/full scale");
}

// Every channel row ends with this tile, with or without events: a channel without events shows
// its zeroed worst-event fields ("frame 0, 0 smp" with the silence/full-scale suffix).
bool append_worst_event(TextBuffer& page, const ArtifactChannelResult& c,
                        const ArtifactConfig& config) {
    return append_tile_open(page, "Worst Event", false) &&
           text_append_format(page, "frame %zu, %zu smp", c.worst_event_start_frame,
                              c.worst_event_length) &&
           append_severity_suffix(page, c, config) && append_tile_close(page);
}

bool append_channel_row(TextBuffer& page, const RunResults& results, unsigned channel) {
    const ArtifactResult& r = results.artifact.result;
    const ArtifactChannelResult& c = r.channel[channel];
    return append_channel_tile_row_open(page, channel) &&
           append_tile_text(page, "Channel", false, channel_label(r.channels, channel)) &&
           append_tile_count(page, "Events Counted", c.counted_event_count != 0,
                             c.counted_event_count) &&
           append_tile_count(page, "Minor Events", false, c.minor_event_count) &&
           append_tile_open(page, "Samples Flagged", false) &&
           text_append_format(page, "%zu / %zu", c.samples_flagged, c.samples_checked) &&
           append_tile_close(page) &&
           append_tile_count(page, "Samples Excluded", false, c.samples_excluded) &&
           append_worst_event(page, c, results.config.artifact) && append_tile_row_close(page);
}

bool append_minor_events_note(TextBuffer& page, const ArtifactConfig& config) {
    return text_append_format(page,
                              "<p class=\"desc\">Minor events are outlier samples no more than "
                              "%.4g&times; over the detection threshold (and no more than "
                              "%.4g&times; over it measured against the whole file), or runs of "
                              "exact silence or full scale shorter than %zu samples. They are "
                              "listed, but only counted events fail the check.</p>\n",
                              config.min_severity.value, config.min_global_severity.value,
                              config.min_silence_clip_run.value);
}

bool append_artifact_body(TextBuffer& page, const RunResults& results, const CheckStatus& status) {
    if (!status.ran) return true;
    if (!status.gates && !append_ref_only_flag_note(page, "--artifact-ref-only")) return false;
    for (unsigned c = 0; c < gallery_blocks(results.artifact.result.channels); ++c)
        if (!append_channel_row(page, results, c)) return false;
    return append_minor_events_note(page, results.config.artifact);
}

} // namespace

bool append_artifact_card(TextBuffer& page, const ReportInputs& in) {
    const CheckStatus status = check_status(in.results, GatingCheck::artifact);
    const Badge badge = status_badge(status);
    return append_card_open(page, "artifact", "<h3>Artifact Detection</h3>", &badge) &&
           append_artifact_body(page, in.results, status) && append_card_close(page);
}
