// Shared pieces of the audio tests: a per-test scratch directory, fixture files written into it,
// and checks on WavFile records.
#pragma once

#include "audio/wav_file.h"
#include "support/temp_dir.h"
#include "support/wav_fixture.h"

#include <gtest/gtest.h>

#include <string>

inline constexpr const char* kGenericWavError =
    "not a supported 16/24/32-bit integer or 32/64-bit float PCM WAV file";

class WavTest : public ::testing::Test {
  protected:
    // Writes the bytes to a file of that name in the scratch directory and returns its path.
    std::string write_fixture(const std::string& name, std::span<const std::uint8_t> bytes) {
        const std::string path = dir_.file(name);
        EXPECT_TRUE(fixture_write_file(path, bytes)) << path;
        return path;
    }

    std::string path_of(const std::string& name) const { return dir_.file(name); }

  private:
    TempDir dir_;
};

// A record holding something in every field, to show that a failed read zeroes it.
inline WavFile filled_record() {
    WavFile file;
    file.sample_rate = 44100;
    file.channels = 2;
    file.format = 16;
    file.extensible = true;
    file.channel_mask = 3;
    file.samples = {0.5, -0.5};
    file.frames = 1;
    file.extra_chunks = {1, 2, 3};
    return file;
}

inline void expect_zeroed(const WavFile& file) {
    EXPECT_EQ(file.sample_rate, 0u);
    EXPECT_EQ(file.channels, 0u);
    EXPECT_EQ(file.format, 0u);
    EXPECT_FALSE(file.extensible);
    EXPECT_EQ(file.channel_mask, 0u);
    EXPECT_TRUE(file.samples.empty());
    EXPECT_EQ(file.frames, 0u);
    EXPECT_TRUE(file.extra_chunks.empty());
}
