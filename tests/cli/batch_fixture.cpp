#include "batch_fixture.h"

#include "analyze_fixture.h"
#include "cli_test_support.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

const char* const kFourPairs = "id\tref\tdut\n"
                               "pass\tref.wav\tpass.wav\n"
                               "fail\tref.wav\tshort.wav\n"
                               "# the next two cannot be compared\n"
                               "apart\tref.wav\tother.wav\n"
                               "missing\tref.wav\tabsent.wav\n";

BatchFolder::BatchFolder() {
    constexpr std::uint32_t rate = 48000;
    const std::vector<double> ref = test_noise(5, rate);
    write_wav(dir.file("ref.wav"), rate, 1, ref);
    write_wav(dir.file("pass.wav"), rate, 1, delayed(ref, 3));
    write_wav(dir.file("short.wav"), rate, 1,
              std::vector<double>(ref.begin(), ref.begin() + rate / 2));
    write_wav(dir.file("other.wav"), rate, 1, test_noise(6, rate));
}

std::string BatchFolder::manifest(const std::string& text, const std::string& name) const {
    EXPECT_TRUE(write_text_file(dir.file(name), text));
    return dir.file(name);
}

ProcessOutput BatchFolder::batch(const std::vector<std::string>& args) const {
    std::vector<std::string> all{"batch"};
    all.insert(all.end(), args.begin(), args.end());
    return run_sonalyx_in(dir.path(), all);
}

std::vector<BatchRow> read_rows(const std::string& path) {
    std::vector<BatchRow> rows;
    std::string error;
    EXPECT_TRUE(read_batch_rows_json(read_text_file(path), rows, error)) << path << ": " << error;
    return rows;
}

std::string rows_without_times(const std::vector<BatchRow>& rows) {
    std::string text;
    for (const BatchRow& row : rows) {
        text += row.id + " | " + row.ref_path + " | " + row.dut_path + " | " + row.verdict + " | " +
                row.failing_checks + " | " + row.error + " | " + row.report + " | " +
                (row.offset ? std::to_string(*row.offset) : "-") + " | " +
                (row.level_p99_db ? std::to_string(*row.level_p99_db) : "-") + " | " +
                (row.loudness_delta_lu ? std::to_string(*row.loudness_delta_lu) : "-") + " | " +
                (row.thdn_db ? std::to_string(*row.thdn_db) : "-") + " | " +
                (row.artifact_count ? std::to_string(*row.artifact_count) : "-") + "\n";
    }
    return text;
}

void set_time(const std::string& path, long seconds) {
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0) << path;
}
