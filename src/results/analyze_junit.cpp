// The JUnit file of one analyze run: a test case per check that ran, failed when the check fails
// the overall verdict (a reference-only failure passes, as it does for the exit status), or one
// test case with the error of a run that could not compare its files.
#include "results/batch_row.h"
#include "results/check_gating.h"
#include "results/gating_names.h"
#include "results/json_entries.h"
#include "results/junit_xml.h"

#include <array>
#include <cstddef>

namespace {

constexpr std::string_view kSuiteName = "sonalyx analyze";

struct NamedStatus {
    const char* name;
    CheckStatus status;
    bool fails_overall;
};

std::array<NamedStatus, kGatingCheckCount + 1> named_statuses(const RunResults& results) {
    std::array<NamedStatus, kGatingCheckCount + 1> statuses{};
    for (std::size_t index = 0; index < kGatingCheckCount; ++index) {
        const auto check = static_cast<GatingCheck>(index);
        const CheckStatus status = check_status(results, check);
        statuses[index] = {gating_readable_name(check), status, check_fails_overall(check, status)};
    }
    // Bit accuracy never gates: it is a test case that cannot fail.
    statuses[kGatingCheckCount] = {"Bit Accuracy", bit_accuracy_status(results), false};
    return statuses;
}

} // namespace

bool write_analyze_junit(const RunResults& results, std::string& out) {
    out.clear();
    const bool built = json_guard_memory([&] {
        const auto statuses = named_statuses(results);
        JunitSuite suite{kSuiteName, 0, 0, 0, 0.0};
        for (const NamedStatus& check : statuses) {
            suite.tests += check.status.ran ? 1 : 0;
            suite.failures += check.fails_overall ? 1 : 0;
        }
        junit_open(out, suite);
        const std::string details = "ref: " + results.ref.path + "\ndut: " + results.dut.path;
        for (const NamedStatus& check : statuses) {
            if (!check.status.ran) continue;
            const std::string message = std::string(check.name) + " failed";
            junit_case(out, {results.dut.path, check.name, 0.0,
                             check.fails_overall ? JunitOutcome::failure : JunitOutcome::passed,
                             message, details});
        }
        junit_close(out);
        return true;
    });
    if (!built) out.clear();
    return built;
}

bool write_analyze_error_junit(std::string_view error_text, std::string_view ref_path,
                               std::string_view dut_path, std::string& out) {
    out.clear();
    const bool built = json_guard_memory([&] {
        junit_open(out, {kSuiteName, 1, 0, 1, 0.0});
        const std::string details = std::string(error_text) + "\nref: " + std::string(ref_path) +
                                    "\ndut: " + std::string(dut_path);
        junit_case(out, {dut_path, "analyze", 0.0, JunitOutcome::error, error_text, details});
        junit_close(out);
        return true;
    });
    if (!built) out.clear();
    return built;
}
