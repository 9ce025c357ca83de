#include "checks/impulse_template.h"

#include "audio/audio.h"
#include "checks/impulse_template_frame.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <span>

namespace {

// The three per-channel scratch arrays, reused for every frame: reference magnitudes, DUT
// magnitudes and the template.
struct FrameScratch {
    std::unique_ptr<double[]> r;
    std::unique_ptr<double[]> u;
    std::unique_ptr<double[]> t;
};

bool allocate_scratch(FrameScratch& scratch, std::size_t size) {
    scratch.r.reset(new (std::nothrow) double[size]);
    scratch.u.reset(new (std::nothrow) double[size]);
    scratch.t.reset(new (std::nothrow) double[size]);
    return scratch.r && scratch.u && scratch.t;
}

// The magnitudes of elements first ... first + len - 1 of one channel of the overlap.
void load_magnitudes(const AlignedChannel& channel, std::size_t first, std::size_t len,
                     FrameScratch& scratch) {
    for (std::size_t i = 0; i < len; ++i) {
        scratch.r[i] = std::fabs(view_at(channel.ref, first + i));
        scratch.u[i] = std::fabs(view_at(channel.dut, first + i));
    }
}

// Counts the DUT magnitudes above the template. Keeping the worst as "strictly greater than the
// worst so far, starting from 0" gives what per-frame worsts merged across frames give: the first
// position of the largest excess.
void score_frame(const FrameScratch& scratch, std::size_t s0, std::size_t len,
                 ImpulseTemplateChannel& channel) {
    for (std::size_t i = 0; i < len; ++i) {
        const double excess = scratch.u[i] - scratch.t[i];
        if (!(excess > 0.0)) continue;
        ++channel.total_fails;
        if (excess > channel.worst_diff) {
            channel.worst_sample = s0 + i;
            channel.worst_diff = excess;
            channel.worst_ref_amp = scratch.r[i];
            channel.worst_dut_amp = scratch.u[i];
        }
    }
}

// Walks the overlap of channel k in frames of frame_size samples, the last one shorter.
ImpulseTemplateChannel check_channel(const AlignedPair& pair, std::size_t k, std::size_t frame_size,
                                     const ImpulseTemplateLevels& levels) {
    ImpulseTemplateChannel channel;
    const AlignedChannel aligned = aligned_channel(pair, k);
    const std::size_t length = aligned.ref.size;
    FrameScratch scratch;
    // A frame size of 0 walks no frames (settings validation never lets it through). No frame is
    // longer than the overlap, so the buffers hold the smaller of the two sizes.
    const bool walk =
        frame_size > 0 && length > 0 && allocate_scratch(scratch, std::min(frame_size, length));
    for (std::size_t done = 0; walk && done < length; done += frame_size) {
        const std::size_t len = std::min(frame_size, length - done);
        load_magnitudes(aligned, done, len, scratch);
        build_impulse_template(std::span<const double>(scratch.r.get(), len), levels,
                               std::span<double>(scratch.t.get(), len));
        score_frame(scratch, aligned.ref_first + done, len, channel);
    }
    channel.has_failures = channel.total_fails > 0;
    channel.passed = channel.total_fails == 0;
    return channel;
}

} // namespace

ImpulseTemplateResult impulse_template_check(const AlignedPair& pair, std::size_t frame_size,
                                             double peak_threshold_db, double ratio,
                                             double noise_floor_db) {
    ImpulseTemplateResult result;
    result.channels = pair.ref->channels;
    result.passed = true;
    if (result.channels == 0) return result;
    ImpulseTemplateLevels levels;
    levels.floor = db_to_linear(noise_floor_db);
    levels.peak = db_to_linear(peak_threshold_db);
    levels.ratio = ratio;
    levels.guard = static_cast<std::size_t>(0.005 * static_cast<double>(pair.ref->sample_rate));
    const std::size_t examined = std::min<std::size_t>(result.channels, 2);
    for (std::size_t k = 0; k < examined; ++k) {
        result.channel[k] = check_channel(pair, k, frame_size, levels);
        if (!result.channel[k].passed) result.passed = false;
    }
    return result;
}
