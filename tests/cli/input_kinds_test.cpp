// Inputs that are not regular files (a directory, a FIFO with no writer, a socket, an endless
// character device) are refused at once with "(not a regular file)" in the message each command
// already uses for an unreadable input: never a hang, never a read of an endless stream. Each run
// gets a few seconds' alarm, so a regression fails instead of blocking the suite.
#include "analyze_fixture.h"
#include "cli_test_support.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr unsigned kAlarmSeconds = 20;

struct KindsFolder {
    TempDir dir;
    KindsFolder() {
        write_wav(dir.file("ref.wav"), 48000, 1, test_noise(3, 4800));
        EXPECT_EQ(::mkfifo(dir.file("fifo.wav").c_str(), 0644), 0);
        EXPECT_EQ(::mkdir(dir.file("folder.wav").c_str(), 0755), 0);
    }
    ProcessOutput run(const std::vector<std::string>& args) const {
        ProcessLimits limits;
        limits.seconds = kAlarmSeconds;
        return run_sonalyx_in(dir.path(), args, limits);
    }
};

// A listening-free Unix socket bound at `path`; closed (the name stays) when the test ends.
struct SocketFile {
    int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    explicit SocketFile(const std::string& path) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        EXPECT_LT(path.size(), sizeof address.sun_path);
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }
    ~SocketFile() { ::close(fd); }
    SocketFile(const SocketFile&) = delete;
    SocketFile& operator=(const SocketFile&) = delete;
};

std::string first_line(const std::string& text) {
    return text.substr(0, text.find('\n') + 1);
}

TEST(InputKinds, AnalyzeRefusesAFifoRefWithoutWaitingForAWriter) {
    const KindsFolder f;
    const ProcessOutput run =
        f.run({"analyze", "--ref", "fifo.wav", "--dut", "ref.wav", "--out", "o.html", "--json"});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(first_line(run.err), "error: failed to read --ref 'fifo.wav' (not a regular file)\n");
    // An unreadable input is a comparison error: the ERROR page and JSON say why.
    EXPECT_TRUE(has(read_text_file(f.dir.file("o.json")),
                    "\"error\": \"failed to read --ref 'fifo.wav' (not a regular file)\""));
}

TEST(InputKinds, AnalyzeRefusesADirectoryDeviceOrSocketDut) {
    const KindsFolder f;
    const SocketFile socket(f.dir.file("sock.wav"));
    for (const std::string dut : {"folder.wav", "/dev/zero", "sock.wav", "fifo.wav"}) {
        const ProcessOutput run =
            f.run({"analyze", "--ref", "ref.wav", "--dut", dut, "--out", "o.html"});
        EXPECT_EQ(run.exit_status, 1) << dut;
        EXPECT_EQ(run.err, "error: failed to read --dut '" + dut + "' (not a regular file)\n" +
                               "wrote an error report to o.html (overall: ERROR)\n");
    }
}

TEST(InputKinds, BothInputsAreToldAtOnce) {
    const KindsFolder f;
    const ProcessOutput run =
        f.run({"analyze", "--ref", "/dev/zero", "--dut", "missing.wav", "--out", "o.html"});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err,
              "error: failed to read --ref '/dev/zero' (not a regular file)\n"
              "error: failed to read --dut 'missing.wav' (file not found or not readable)\n"
              "wrote an error report to o.html (overall: ERROR)\n");
}

TEST(InputKinds, PlotAndTrimRefuseTheirInput) {
    const KindsFolder f;
    for (const std::string input : {"fifo.wav", "folder.wav", "/dev/zero"}) {
        for (const char* command : {"plot", "trim"}) {
            const ProcessOutput run = f.run({command, "--input", input, "--out", "o.x"});
            EXPECT_EQ(run.exit_status, 1) << command << " " << input;
            EXPECT_EQ(run.err,
                      "error: failed to read --input '" + input + "' (not a regular file)\n");
            EXPECT_FALSE(path_exists(f.dir.file("o.x")));
        }
    }
}

TEST(InputKinds, SettingsFilesThatAreNotFilesAreRefused) {
    const KindsFolder f;
    const std::vector<std::string> pair{"analyze", "--ref", "ref.wav", "--dut",
                                        "ref.wav", "--out", "o.html"};
    std::vector<std::string> args = pair;
    args.insert(args.end(), {"--config", "fifo.wav"});
    ProcessOutput run = f.run(args);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: failed to read or parse --config 'fifo.wav'\n");
    args = pair;
    args.insert(args.end(), {"--defaults-cfg", "/dev/zero"});
    run = f.run(args);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, "error: --defaults-cfg '/dev/zero' does not exist or could not be parsed\n");
}

TEST(InputKinds, RegularFileMessagesStayAsTheyWere) {
    const KindsFolder f;
    ASSERT_TRUE(write_text_file(f.dir.file("text.wav"), "not audio"));
    ProcessOutput run =
        f.run({"analyze", "--ref", "text.wav", "--dut", "ref.wav", "--out", "o.html"});
    EXPECT_EQ(first_line(run.err),
              "error: failed to read --ref 'text.wav' (not a supported 16/24/32-bit integer or "
              "32/64-bit float PCM WAV file)\n");
    run = f.run({"plot", "--input", "missing.wav", "--out", "o.html"});
    EXPECT_EQ(run.err, "error: failed to read --input 'missing.wav' (not a supported 16/24/32-bit "
                       "integer or 32/64-bit float PCM WAV file)\n");
}

} // namespace
