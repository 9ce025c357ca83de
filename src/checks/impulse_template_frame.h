// The upper envelope ("template") the impulse template check builds for one frame of the
// reference: a noise floor, the peak level at the frame edges, the reference magnitude times the
// ratio, and widened levels around every transient run of the reference.
#pragma once

#include <cstddef>
#include <span>

// The linear levels one check run uses for every frame.
struct ImpulseTemplateLevels {
    double floor = 0.0;    // allowed everywhere
    double peak = 0.0;     // allowed at the frame edges; reference magnitudes above it form runs
    double ratio = 0.0;    // allowed multiple of the reference magnitude
    std::size_t guard = 0; // edge and side width in samples (5 ms)
};

// Fills t (as long as r) with the template for the reference magnitudes r of one frame.
void build_impulse_template(std::span<const double> r, const ImpulseTemplateLevels& levels,
                            std::span<double> t);
