// spectral_fidelity.profile: which kind of signal the spectral comparison expects.
#pragma once

#include <string_view>

// The numeric values are the comparison modes of the spectral check.
enum class SpectralProfile {
    freq_domain_multitone = 0,
    freq_sweep = 1,
    amp_sweep = 2,
};

// Exact match of "freq_domain_multitone", "freq_sweep" or "amp_sweep".
bool parse_spectral_profile(std::string_view text, SpectralProfile& out);

// True for "freq_sweep" and "amp_sweep".
bool is_sweep_profile(std::string_view text);
