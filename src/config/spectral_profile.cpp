#include "config/spectral_profile.h"

bool parse_spectral_profile(std::string_view text, SpectralProfile& out) {
    if (text == "freq_domain_multitone") {
        out = SpectralProfile::freq_domain_multitone;
    } else if (text == "freq_sweep") {
        out = SpectralProfile::freq_sweep;
    } else if (text == "amp_sweep") {
        out = SpectralProfile::amp_sweep;
    } else {
        return false;
    }
    return true;
}

bool is_sweep_profile(std::string_view text) {
    return text == "freq_sweep" || text == "amp_sweep";
}
