// The alignment confidence gauge: four bands (poor, fair, good, excellent) with a pointer placed
// within its band's stretch of the track, and the number and word beside it.
#pragma once

#include "report/page/text_buffer.h"

struct GaugeReading {
    const char* word_class = "poor"; // "poor", "fair", "good" or "excellent"
    const char* word = "Poor";
    double pointer_pct = 0.0; // 0..100 along the track
};

// The band and pointer of a confidence, clamped to [-1, 1] first.
GaugeReading alignment_gauge_reading(double confidence);

// "<div class=\"align-gauge\">\n", the track with the pointer and the value line showing the
// unclamped confidence; the caller adds the captions and closes the gauge with "</div>\n".
bool append_alignment_gauge_open(TextBuffer& page, double confidence);
