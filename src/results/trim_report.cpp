#include "results/trim_report.h"

#include "results/json_entries.h"
#include "results/prefixed_entries.h"

#include <cstdio>
#include <string_view>
#include <utility>

namespace {

// "<which>_sample_offset" ... "<which>_rep_psr_<r>"; the repetition keys only when checks were
// made.
bool occurrence_entries(FlatJson& json, std::string_view prefix, const SyncDetection& found) {
    bool ok = json_prefixed_count(json, prefix, "sample_offset", found.position) &&
              json_int(json, (std::string(prefix) + "channel").c_str(), found.channel) &&
              json_prefixed_real(json, prefix, "psr", found.psr) &&
              json_prefixed_real(json, prefix, "similarity", found.similarity);
    for (int r = 0; ok && r < found.rep_count && r < kSyncChirpCount; ++r) {
        char suffix[32];
        std::snprintf(suffix, sizeof suffix, "rep_psr_%d", r);
        ok = json_prefixed_real(json, prefix, suffix, found.rep_psr[r]);
    }
    return ok;
}

} // namespace

bool build_trim_report_json(const char* input_path, const TrimPoints& points, std::string& json) {
    json.clear();
    FlatJson object;
    const bool built = json_guard_memory([&] {
        return json_open(object) && json_text(object, "input_file", input_path) &&
               occurrence_entries(object, "leading_", points.leading) &&
               occurrence_entries(object, "trailing_", points.trailing) &&
               json_long(object, "sync_point", static_cast<long>(points.sync_point)) &&
               json_long(object, "trim_point", static_cast<long>(points.trim_point),
                         EntryEnd::last) &&
               json_close(object);
    });
    if (built) json = std::move(object.text);
    return built;
}
