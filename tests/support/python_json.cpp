#include "support/python_json.h"

#include "support/run_process.h"
#include "support/temp_dir.h"

namespace {

const char* const kPythonJsonScript =
    "import json, sys\n"
    "text = open(sys.argv[1], 'rb').read().decode('utf-8', 'surrogateescape')\n"
    "value = json.loads(text)\n"
    "assert isinstance(value, dict), 'not an object'\n"
    "for key in sys.argv[2:]:\n"
    "    sys.stdout.buffer.write(value[key].encode('utf-8', 'surrogateescape') + b'\\0')\n";

} // namespace

std::string awkward_path(std::size_t length) {
    std::string path = "dir/\x01z\x1b[0m\x1f\t\n\r\x7f \"q\" C:\\x caf\xc3\xa9 \xff.wav";
    path.insert(4, length - path.size(), 'p');
    return path;
}

PythonJson python_json(const std::string& text, const std::vector<std::string>& keys) {
    const TempDir dir;
    const std::string path = dir.file("parsed.json");
    PythonJson result;
    if (!write_text_file(path, text)) {
        result.error = "could not write " + path;
        return result;
    }
    std::vector<std::string> argv = {"/usr/bin/env", "python3", "-c", kPythonJsonScript, path};
    argv.insert(argv.end(), keys.begin(), keys.end());
    const ProcessOutput run = run_process(argv);
    result.parsed = run.exit_status == 0;
    result.error = run.err;
    std::string value;
    for (const char c : run.out) {
        if (c != '\0') {
            value += c;
            continue;
        }
        result.values.push_back(value);
        value.clear();
    }
    return result;
}
