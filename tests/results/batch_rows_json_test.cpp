#include "results/results.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<BatchRow> sample_rows() {
    BatchRow pass{"a",   "in/a ref.wav", "in/a dut.wav", "PASS", "",  "",      12,
                  0.125, -0.5,           -90.25,         0,      1.5, "a.html"};
    BatchRow fail{"b\"q", "r\\b.wav", "d\tb.wav", "FAIL", "Level Fidelity, Loudness",
                  "",     -7,         3.0,        2.25,   std::nullopt,
                  4,      2.75,       "b\"q.html"};
    BatchRow error{"c", "c.wav", "cd.wav", "ERROR", "",      "could not align\nthe files", {}, {},
                   {},  {},      {},       0.25,    "c.html"};
    return {pass, fail, error};
}

void expect_same(const BatchRow& a, const BatchRow& b) {
    EXPECT_EQ(a.id, b.id);
    EXPECT_EQ(a.ref_path, b.ref_path);
    EXPECT_EQ(a.dut_path, b.dut_path);
    EXPECT_EQ(a.verdict, b.verdict);
    EXPECT_EQ(a.failing_checks, b.failing_checks);
    EXPECT_EQ(a.error, b.error);
    EXPECT_EQ(a.offset, b.offset);
    EXPECT_EQ(a.level_p99_db, b.level_p99_db);
    EXPECT_EQ(a.loudness_delta_lu, b.loudness_delta_lu);
    EXPECT_EQ(a.thdn_db, b.thdn_db);
    EXPECT_EQ(a.artifact_count, b.artifact_count);
    EXPECT_EQ(a.seconds, b.seconds);
    EXPECT_EQ(a.report, b.report);
}

TEST(BatchRowsJson, RoundTripsEveryField) {
    const std::vector<BatchRow> rows = sample_rows();
    std::string json;
    ASSERT_TRUE(write_batch_rows_json(rows, 4.5, json));
    std::vector<BatchRow> back;
    std::string error;
    ASSERT_TRUE(read_batch_rows_json(json, back, error)) << error;
    ASSERT_EQ(back.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
        expect_same(back[i], rows[i]);
    std::string again;
    ASSERT_TRUE(write_batch_rows_json(back, 4.5, again));
    EXPECT_EQ(again, json);
}

TEST(BatchRowsJson, HeaderCountsVerdictsAndUnsetFiguresHaveNoKey) {
    std::string json;
    ASSERT_TRUE(write_batch_rows_json(sample_rows(), 4.5, json));
    EXPECT_EQ(json.rfind("{\n    \"sonalyx_phase\": 2,\n    \"status\": \"batch\",\n"
                         "    \"pair_count\": 3,\n    \"pass_count\": 1,\n"
                         "    \"fail_count\": 1,\n    \"error_count\": 1,\n"
                         "    \"total_seconds\": 4.500000,\n",
                         0),
              0u);
    EXPECT_NE(json.find("\"pair_1_offset\": -7,"), std::string::npos);
    EXPECT_EQ(json.find("pair_1_thdn_db"), std::string::npos);
    EXPECT_EQ(json.find("pair_2_offset"), std::string::npos);
    EXPECT_NE(json.find("\"pair_2_report\": \"c.html\"\n}\n"), std::string::npos);
}

TEST(BatchRowsJson, EmptyBatchRoundTrips) {
    std::string json;
    ASSERT_TRUE(write_batch_rows_json({}, 0.0, json));
    std::vector<BatchRow> back(2);
    std::string error;
    ASSERT_TRUE(read_batch_rows_json(json, back, error)) << error;
    EXPECT_TRUE(back.empty());
}

TEST(BatchRowsJson, RefusesIncompleteOrForeignTexts) {
    std::string json;
    ASSERT_TRUE(write_batch_rows_json(sample_rows(), 1.0, json));
    std::vector<BatchRow> rows;
    std::string error;
    const std::size_t key = json.find("    \"pair_1_verdict\"");
    const std::string without = json.substr(0, key) + json.substr(json.find('\n', key) + 1);
    EXPECT_FALSE(read_batch_rows_json(without, rows, error));
    EXPECT_EQ(error, "pair 1 is incomplete");
    EXPECT_TRUE(rows.empty());
    EXPECT_FALSE(
        read_batch_rows_json("{\"status\": \"analyzed\", \"pair_count\": 0}", rows, error));
    EXPECT_NE(error.find("not a batch summary"), std::string::npos);
    EXPECT_FALSE(
        read_batch_rows_json("{\"status\": \"batch\", \"pair_count\": 99999999999}", rows, error));
    EXPECT_FALSE(read_batch_rows_json("not json", rows, error));
}

} // namespace
