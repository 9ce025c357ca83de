// The filled outline of one envelope trace, built in one pass over the columns.
#include "report/chart_scales.h"
#include "report/envelope_parts.h"

namespace {

// Left to right: a valid column that starts a piece writes its left and right edge at its
// maximum, one that continues a piece its right edge; an invalid column closes an open piece.
// Returns false at the first failed append.
bool append_upper_edges(TextBuffer& page, const Envelope& envelope, EnvelopeScale scale) {
    bool in_piece = false;
    for (std::size_t i = 0; i < kEnvelopeColumns; ++i) {
        bool ok = true;
        if (envelope.valid[i] != 0) {
            const double y = envelope_y(envelope.max[i], scale);
            ok = (in_piece || text_append_point(page, "M", envelope_column_x(i), y, 2)) &&
                 text_append_point(page, "L", envelope_column_x(i + 1), y, 2);
            in_piece = true;
        } else if (in_piece) {
            // An invalid column with no open piece has nothing to end, so it writes nothing.
            ok = text_append(page, "Z ");
            in_piece = false;
        }
        if (!ok) return false;
    }
    return true;
}

// Only the piece that reaches the last column gets a lower edge: walking back from that column
// while columns are valid, each writes its left edge at its minimum; "Z " closes the piece. Every
// other piece was closed straight after its upper edge, which is the intended drawing.
bool append_last_lower_edge(TextBuffer& page, const Envelope& envelope, EnvelopeScale scale) {
    std::size_t i = kEnvelopeColumns;
    if (envelope.valid[i - 1] == 0) return true;
    while (i > 0 && envelope.valid[i - 1] != 0) {
        --i;
        if (!text_append_point(page, "L", envelope_column_x(i), envelope_y(envelope.min[i], scale),
                               2)) {
            return false;
        }
    }
    return text_append(page, "Z ");
}

} // namespace

bool append_envelope_shape(TextBuffer& page, const Envelope& envelope, EnvelopeScale scale,
                           const EnvelopeTrace& trace) {
    return text_append_format(page,
                              "<path fill=\"var(%s)\" fill-opacity=\"%.2f\" stroke=\"none\" "
                              "data-trace=\"%s\" d=\"",
                              trace.colour, trace.opacity, trace.name) &&
           append_upper_edges(page, envelope, scale) &&
           append_last_lower_edge(page, envelope, scale) && text_append(page, "\"/>");
}
