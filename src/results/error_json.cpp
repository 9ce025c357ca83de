#include "results/json_entries.h"
#include "results/results_json.h"

#include <utility>

bool build_error_json(std::string_view error_text, const char* ref_path, const char* dut_path,
                      std::string& json) {
    json.clear();
    FlatJson object;
    const bool built = json_guard_memory([&] {
        return json_open(object) && json_int(object, "sonalyx_phase", 2) &&
               json_text(object, "status", "error") &&
               json_text(object, "overall_verdict", "ERROR") &&
               json_text(object, "error", error_text) && json_text(object, "ref_file", ref_path) &&
               json_text(object, "dut_file", dut_path, EntryEnd::last) && json_close(object);
    });
    if (built) json = std::move(object.text);
    return built;
}
