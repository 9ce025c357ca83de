// The tier marks of the spectral chart: shaded bands and dashed threshold lines with labels.
#include "report/charts/chart_scales.h"
#include "report/charts/spectral_parts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>

namespace {

// "<label> %.0fdB" for a set threshold.
void add_tier_line(std::vector<TierLine>& lines, const std::optional<double>& db,
                   const char* label) {
    if (!db) return;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%s %.0fdB", label, *db);
    lines.push_back({*db, text.data()});
}

// A band across the plot between the heights of two levels.
bool append_band(TextBuffer& page, double upper_y, double lower_y) {
    const double top = std::min(upper_y, lower_y);
    return text_append_format(page,
                              "<rect x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" height=\"%.2f\" "
                              "fill=\"var(--accent)\" opacity=\"0.05\"/>",
                              kSpectralArea.left, top, kSpectralArea.right - kSpectralArea.left,
                              std::fabs(lower_y - upper_y));
}

// Two bands: from the noise floor down to the plot bottom, and between the two thresholds that
// follow it (low-level signal and peak); a band needs both of its edges set.
bool append_tier_bands(TextBuffer& page, const SpectralTierLines& tiers) {
    if (tiers.noise_floor_db &&
        !append_band(page, spectral_y(*tiers.noise_floor_db), kSpectralArea.bottom)) {
        return false;
    }
    return !tiers.low_level_db || !tiers.peak_db ||
           append_band(page, spectral_y(*tiers.peak_db), spectral_y(*tiers.low_level_db));
}

bool append_tier_line(TextBuffer& page, const TierLine& line) {
    const double y = spectral_y(line.db);
    return text_append_format(
        page,
        "<line x1=\"%.2f\" y1=\"%.2f\" x2=\"%.2f\" y2=\"%.2f\" stroke=\"var(%s)\" "
        "stroke-width=\"1\" stroke-dasharray=\"%s\"/>\n<text x=\"%.2f\" y=\"%.2f\" "
        "font-size=\"10\" fill=\"var(%s)\" text-anchor=\"%s\">%s</text>\n",
        kSpectralArea.left, y, kSpectralArea.right, y, kTierColour, kTierDash, 64.0, y - 3.0,
        kTierColour, kTierAlign, line.text.c_str());
}

} // namespace

std::vector<TierLine> tier_lines(const SpectralTierLines& tiers) {
    std::vector<TierLine> lines;
    add_tier_line(lines, tiers.noise_floor_db, "noise floor");
    add_tier_line(lines, tiers.low_level_db, "low-level signal threshold");
    add_tier_line(lines, tiers.peak_db, "peak threshold");
    return lines;
}

bool append_tier_marks(TextBuffer& page, const SpectralTierLines& tiers,
                       std::span<const TierLine> lines) {
    if (!append_tier_bands(page, tiers)) return false;
    for (const TierLine& line : lines) {
        if (!append_tier_line(page, line)) return false;
    }
    return true;
}
