#include "report/charts/chart_data_sets.h"

#include "results/results.h"

#include <algorithm>
#include <cstddef>

namespace {

bool same_envelope(const Envelope* a, const Envelope& b) {
    return a->min == b.min && a->max == b.max && a->valid == b.valid;
}

bool same_spectrum(std::span<const double> a, std::span<const double> b) {
    return std::ranges::equal(a, b);
}

// The element id for set `index` of the kind named by `stem`.
std::string set_id(const char* stem, std::size_t index) {
    return std::string(stem) + std::to_string(index);
}

// The index of the set in `known` equal to `wanted`, or known.size() when there is none.
template <typename Set, typename Wanted, typename Same>
std::size_t find_set(const std::vector<Set>& known, const Wanted& wanted, Same same) {
    const auto found =
        std::ranges::find_if(known, [&wanted, same](const Set& set) { return same(set, wanted); });
    return static_cast<std::size_t>(found - known.begin());
}

// Names set `index` in `id` and registers `set` when it is new (the index past the known ones).
template <typename Set>
bool note_set(std::vector<Set>& known, std::size_t index, const Set& set, const char* stem,
              std::string& id) {
    return json_guard_memory([&] {
        id = set_id(stem, index);
        if (index == known.size()) known.push_back(set);
        return true;
    });
}

bool append_set_open(TextBuffer& page, const std::string& id) {
    const JsonOut out = text_json_out(page);
    return json_raw(out, "<script type=\"application/json\" id=\"") && json_raw(out, id) &&
           json_raw(out, "\">");
}

bool append_envelope_json(JsonOut out, const Envelope& envelope) {
    return json_raw(out, "{") && json_key(out, "min") && json_fixed_array(out, envelope.min, 4) &&
           json_next_key(out, "max") && json_fixed_array(out, envelope.max, 4) &&
           json_next_key(out, "valid") && json_flag_array(out, envelope.valid) &&
           json_raw(out, "}</script>\n");
}

} // namespace

bool append_envelope_set(TextBuffer& page, ChartDataSets& sets, const Envelope& envelope,
                         std::string& id) {
    const std::size_t index = find_set(sets.envelopes, envelope, same_envelope);
    const bool known = index < sets.envelopes.size();
    return note_set(sets.envelopes, index, &envelope, "sx-envelope-set-", id) &&
           (known ||
            (append_set_open(page, id) && append_envelope_json(text_json_out(page), envelope)));
}

bool append_spectrum_set(TextBuffer& page, ChartDataSets& sets, std::span<const double> levels,
                         std::string& id) {
    const std::size_t index = find_set(sets.spectra, levels, same_spectrum);
    const bool known = index < sets.spectra.size();
    const JsonOut out = text_json_out(page);
    return note_set(sets.spectra, index, levels, "sx-spectrum-set-", id) &&
           (known || (append_set_open(page, id) && json_fixed_array(out, levels, 2) &&
                      json_raw(out, "</script>\n")));
}
