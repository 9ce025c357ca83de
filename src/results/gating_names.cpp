#include "results/gating_names.h"

#include <array>
#include <cstddef>

namespace {

struct GatingNames {
    const char* machine;
    const char* readable;
};

constexpr std::array<GatingNames, kGatingCheckCount> kGatingNames = {{
    {"length_mismatch", "Length Mismatch"},
    {"bitexact", "Bit-Exactness"},
    {"levelfidelity", "Level Fidelity"},
    {"artifact", "Artifact Detection"},
    {"spectral", "Spectral Fidelity"},
    {"distortion", "Distortion"},
    {"loudness", "Loudness"},
    {"time_domain", "Time Domain"},
    {"impulse_template", "Impulse Template"},
}};

const GatingNames& names_of(GatingCheck check) {
    return kGatingNames[static_cast<std::size_t>(check)];
}

} // namespace

const char* gating_machine_name(GatingCheck check) {
    return names_of(check).machine;
}

const char* gating_readable_name(GatingCheck check) {
    return names_of(check).readable;
}

std::optional<GatingCheck> gating_check_named(std::string_view name) {
    for (std::size_t index = 0; index < kGatingCheckCount; ++index) {
        if (kGatingNames[index].machine == name) return static_cast<GatingCheck>(index);
    }
    return std::nullopt;
}
