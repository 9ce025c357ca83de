// The check that a run never writes over what it reads: every output path is compared with every
// input path, and with every other output, by the identity of the file it names. Paths that name
// an existing file match when they reach the same file (same device and inode, so through symbolic
// and hard links); paths that do not exist yet match when they resolve to the same place ("./x"
// and "x", a linked folder and its target).
#pragma once

#include <span>
#include <string>
#include <vector>

// One path of the run with the words its message uses: an output by its option ("--out",
// "--json", "--report"), an input by what it is ("--ref input", "--input file").
struct RunPath {
    std::string path;
    std::string name;
};

// True when no output names an input or another output. Otherwise false with one complete line
// in `message`: "error: --out 'ref.wav' is the --ref input; refusing to overwrite it\n", or for two
// outputs "error: --json 'x.json' and --out 'x.json' are the same file; refusing to write one over
// the other\n".
bool outputs_spare_inputs(std::span<const RunPath> outputs, std::span<const RunPath> inputs,
                          std::string& message);

// The whole check of a run, its message printed on refusal: `outputs` against `inputs` plus the
// run's settings files (--config when given, the defaults file named by --defaults-cfg or found
// next to the executable) and against each other.
bool run_outputs_allowed(std::span<const RunPath> outputs, std::vector<RunPath> inputs,
                         const char* config_path, const char* defaults_cfg_path);
