#include "report/cards/spectral_card.h"

#include "report/page/page_assets.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace {

struct WidgetState {
    std::span<const SpectralSnapshot> snapshots;
    unsigned channel = 0;
    std::size_t selected = 0; // the first failing snapshot, else the first
};

const SpectralChannelResult& record_of(const WidgetState& state, std::size_t index) {
    return state.snapshots[index].channel[state.channel];
}

std::optional<std::size_t> first_failing(const WidgetState& state) {
    for (std::size_t i = 0; i < state.snapshots.size(); ++i) {
        if (!record_of(state, i).passed) return i;
    }
    return std::nullopt;
}

// The displayed spectra of one snapshot; empty (the short-overlap note) when none were taken.
const SpectrumFigure& snapshot_spectra(const ReportInputs& in, unsigned channel,
                                       std::size_t index) {
    static const SpectrumFigure kNone;
    const std::vector<SpectrumFigure>& taken = in.results.figures.spectral_snapshots[channel];
    return index < taken.size() ? taken[index] : kNone;
}

std::string snapshot_position(const WidgetState& state, std::size_t index) {
    return spectral_position_text(state.snapshots[index].time_sec);
}

bool append_rollup(TextBuffer& page, const WidgetState& state) {
    std::size_t passed = 0;
    for (std::size_t i = 0; i < state.snapshots.size(); ++i) {
        if (record_of(state, i).passed) ++passed;
    }
    const std::size_t total = state.snapshots.size();
    const std::optional<std::size_t> failing = first_failing(state);
    if (!failing) {
        return text_append_format(
            page, "<p class=\"spectral-rollup\">%zu/%zu snapshots passed</p>\n", passed, total);
    }
    return text_append_format(page,
                              "<p class=\"spectral-rollup\">%zu/%zu snapshots passed &mdash; <span "
                              "class=\"fail-detail\">snapshot %zu at %s failed</span></p>\n",
                              passed, total, *failing + 1,
                              snapshot_position(state, *failing).c_str());
}

bool append_tab(TextBuffer& page, const WidgetState& state, std::size_t index) {
    const SpectralChannelResult& record = record_of(state, index);
    const bool selected = index == state.selected;
    if (!text_append_format(page,
                            "<button type=\"button\" class=\"snap-tab%s\" data-snap-idx=\"%zu\" "
                            "role=\"tab\" aria-selected=\"%s\"><span class=\"snap-tab-dot "
                            "%s\"></span><span>Snapshot %zu &middot; %s</span>",
                            selected ? " active" : "", index, selected ? "true" : "false",
                            record.passed ? "pass" : "fail", index + 1,
                            snapshot_position(state, index).c_str())) {
        return false;
    }
    if (!record.passed && !text_append_format(page, "<span class=\"snap-tab-db\">%+.1fdB</span>",
                                              record.worst_diff_db)) {
        return false;
    }
    return text_append(page, "</button>\n");
}

bool append_panel(TextBuffer& page, const ReportInputs& in, const WidgetState& state,
                  std::size_t index, const char* suffix) {
    const SpectralChannelResult& record = record_of(state, index);
    // The frame and chart ids number the snapshots from 0, like data-snap-idx.
    const std::string id_suffix = "-snap" + std::to_string(index) + suffix;
    const std::string frame_id = "sx-spectral-frame" + id_suffix;
    const std::string title = "Snapshot " + std::to_string(index + 1) + " &middot; " +
                              snapshot_position(state, index) + " &middot; " +
                              (record.passed ? "Pass" : "Fail");
    ChartFrame frame;
    frame.kind = ChartKind::spectral;
    frame.frame_id = frame_id.c_str();
    frame.title = title.c_str();
    frame.trace_toggle = true;
    frame.inside_snapshot_panel = true;
    return text_append_format(page, "<div class=\"snap-panel\" data-snap-idx=\"%zu\"%s>\n", index,
                              index == state.selected ? "" : " hidden") &&
           append_record_chart(page, in, record, snapshot_spectra(in, state.channel, index), frame,
                               id_suffix);
}

} // namespace

bool append_snapshot_widget(TextBuffer& page, const ReportInputs& in, unsigned channel,
                            const char* suffix) {
    WidgetState state;
    state.snapshots = in.results.spectral.result.snapshots.snapshots;
    state.channel = channel;
    state.selected = first_failing(state).value_or(0);
    const std::string widget_id = std::string("sx-snap-widget") + suffix;
    if (!append_rollup(page, state) ||
        !text_append_format(page,
                            "<div id=\"%s\">\n<div class=\"spectral-snap-tabs\" "
                            "role=\"tablist\">\n",
                            widget_id.c_str())) {
        return false;
    }
    for (std::size_t i = 0; i < state.snapshots.size(); ++i) {
        if (!append_tab(page, state, i)) return false;
    }
    if (!text_append(page, "</div>\n<div class=\"spectral-snap-panels\">\n")) return false;
    for (std::size_t i = 0; i < state.snapshots.size(); ++i) {
        if (!append_panel(page, in, state, i, suffix)) return false;
    }
    return text_append(page, "</div>\n</div>\n") &&
           append_snapshot_tab_script(page, widget_id.c_str());
}
