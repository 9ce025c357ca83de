// Shared by the harnesses that run a subcommand in-process on one fuzzed WAV file: the private
// folder holding the input file and the output folder, the WAV bytes built from the input, and the
// call of the subcommand with its argument vector.
//
// The input's first bytes describe the file unless it starts with 'R' (as a RIFF file does) or is
// shorter than kPlanBytes; such an input is written unchanged as the whole file, so that every
// refusal of the reader is reached, and the lowest bit of its last byte asks for the subcommand's
// optional second output. Otherwise the file is a well-formed header and the bytes after the plan,
// cut to whole frames and to kMaxPayloadBytes, as its sample data:
//   byte 0, bits 0-2: sample format (16, 24, 32-bit integer, 32, 64-bit float; taken modulo 5)
//           bit 3: two channels, else one
//           bit 4: extensible fmt chunk
//           bit 5: the subcommand's optional second output (trim --report, plot --json)
//           bit 6: a choice of the harness (trim: sync tones around the data; plot: --out a folder)
//           bit 7: bytes 2-5 are the sample rate as it is, else byte 1 picks a supported rate
//   byte 1, bits 0-2: index into kSupportedRates; bits 3-4: a second choice of the harness
//   bytes 2-5: sample rate, little-endian
#pragma once

#include "audio/wav_file.h"
#include "audio/wav_header.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

inline constexpr std::size_t kPlanBytes = 6;
// Enough samples for many frames, few enough that one run stays far below the time limit.
inline constexpr std::size_t kMaxPayloadBytes = 64 * 1024;
inline constexpr std::array<std::uint32_t, 8> kSupportedRates = {22050, 32000, 44100,  48000,
                                                                 88200, 96000, 176400, 192000};
inline constexpr std::array<std::uint32_t, 5> kFormats = {
    kWavFormatInt16, kWavFormatInt24, kWavFormatInt32, kWavFormatFloat32, kWavFormatFloat64};

// What the first bytes of an input ask for.
struct WavPlan {
    bool raw = true; // the input is the whole file
    WavHeaderFields fields;
    bool second_output = false;
    bool choice = false;
    unsigned second_choice = 0;
};

inline std::uint32_t plan_rate(const std::uint8_t* data) {
    if ((data[0] & 0x80) == 0) return kSupportedRates[data[1] % kSupportedRates.size()];
    return data[2] | std::uint32_t{data[3]} << 8 | std::uint32_t{data[4]} << 16 |
           std::uint32_t{data[5]} << 24;
}

inline WavPlan read_plan(const std::uint8_t* data, std::size_t size) {
    WavPlan plan;
    if (size < kPlanBytes || data[0] == 'R') {
        plan.second_output = size > 0 && (data[size - 1] & 1) != 0;
        return plan;
    }
    plan.raw = false;
    plan.fields.format = kFormats[(data[0] & 7) % kFormats.size()];
    plan.fields.channels = (data[0] & 0x08) != 0 ? 2 : 1;
    plan.fields.extensible = (data[0] & 0x10) != 0;
    plan.fields.channel_mask = plan.fields.channels == 2 ? 3 : 4; // front left and right, centre
    plan.fields.sample_rate = plan_rate(data);
    plan.second_output = (data[0] & 0x20) != 0;
    plan.choice = (data[0] & 0x40) != 0;
    plan.second_choice = (data[1] >> 3) & 3;
    return plan;
}

inline std::size_t frame_bytes(const WavHeaderFields& fields) {
    return fields.channels * wav_format_bytes(fields.format);
}

// The sample bytes after the plan, cut to whole frames and to kMaxPayloadBytes.
inline std::span<const std::uint8_t> plan_payload(const WavHeaderFields& fields,
                                                  const std::uint8_t* data, std::size_t size) {
    const std::size_t bytes = std::min(size - kPlanBytes, kMaxPayloadBytes);
    return {data + kPlanBytes, bytes - bytes % frame_bytes(fields)};
}

// A header for `fields` (frames set to the payload's) followed by the payload.
inline std::vector<std::uint8_t> wav_file_bytes(WavHeaderFields fields,
                                                std::span<const std::uint8_t> payload) {
    fields.frames = payload.size() / frame_bytes(fields);
    WavHeader header;
    if (wav_format_is_float(fields.format)) {
        wav_build_float_header(fields, header);
    } else {
        wav_build_int_header(fields, header);
    }
    std::vector<std::uint8_t> bytes(header.bytes.begin(), header.bytes.begin() + header.size);
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    return bytes;
}

// The folder every run works in: "input.wav" and the folder "out" that receives the outputs, in a
// folder of their own under /dev/shm (memory-backed, so writing is cheap), else under /tmp.
struct RunFolder {
    std::string root;
    std::string input;
    std::string out;
};

// Removes everything in `dir`, one level of sub-folders included.
inline void empty_folder(const std::string& dir) {
    DIR* listing = ::opendir(dir.c_str());
    if (listing == nullptr) return;
    while (const dirent* entry = ::readdir(listing)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        const std::string path = dir + "/" + name;
        if (::unlink(path.c_str()) != 0) {
            empty_folder(path);
            ::rmdir(path.c_str());
        }
    }
    ::closedir(listing);
}

// The names in `dir`, "." and ".." left out.
inline std::vector<std::string> folder_entries(const std::string& dir) {
    std::vector<std::string> names;
    DIR* listing = ::opendir(dir.c_str());
    if (listing == nullptr) __builtin_trap();
    while (const dirent* entry = ::readdir(listing)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    ::closedir(listing);
    return names;
}

// Traps unless `dir` holds exactly `expected`, in any order.
inline void expect_entries(const std::string& dir, std::vector<std::string> expected) {
    std::vector<std::string> names = folder_entries(dir);
    std::sort(names.begin(), names.end());
    std::sort(expected.begin(), expected.end());
    if (names != expected) __builtin_trap();
}

inline RunFolder g_run_folder;

inline void remove_run_folder() {
    empty_folder(g_run_folder.root);
    ::rmdir(g_run_folder.root.c_str());
}

// Made once per process and removed at exit.
inline const RunFolder& run_folder() {
    if (!g_run_folder.root.empty()) return g_run_folder;
    struct stat info {};
    const bool shm = ::stat("/dev/shm", &info) == 0 && S_ISDIR(info.st_mode);
    std::string pattern = std::string(shm ? "/dev/shm" : "/tmp") + "/sonalyx-fuzz-run-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) __builtin_trap();
    g_run_folder = {pattern, pattern + "/input.wav", pattern + "/out"};
    if (::mkdir(g_run_folder.out.c_str(), 0700) != 0) __builtin_trap();
    std::atexit(remove_run_folder);
    return g_run_folder;
}

inline void write_whole_file(const std::string& path, std::span<const std::uint8_t> bytes) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) __builtin_trap();
    const bool written =
        bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    if (std::fclose(file) != 0 || !written) __builtin_trap();
}

inline std::string read_whole_file(const std::string& path) {
    std::string text;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) __builtin_trap();
    char block[65536];
    std::size_t got = 0;
    while ((got = std::fread(block, 1, sizeof block, file)) > 0)
        text.append(block, got);
    std::fclose(file);
    return text;
}

// Runs `command` with `args` as its whole argument vector; the status must be 0 or 1.
template <typename Command> int run_command(Command command, std::vector<std::string> args) {
    std::vector<char*> argv;
    for (std::string& arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    const int status = command(std::span<char* const>(argv.data(), args.size()));
    if (status != 0 && status != 1) __builtin_trap();
    return status;
}

// Normal output lines go nowhere; standard error stays, since libFuzzer reports there.
inline void silence_standard_output() {
    if (std::freopen("/dev/null", "w", stdout) == nullptr) __builtin_trap();
}
