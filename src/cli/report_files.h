// The files of one report (the HTML page and, when wanted, its JSON and JUnit files) as one output
// set: the
// --out directory is made and both files are opened before anything is written, and they are put
// in place together or not at all.
#pragma once

#include "audio/audio.h"
#include "cli/output_guard.h"
#include "cli/output_paths.h"

#include <string>
#include <vector>

// What a report run reads, for the check that its report never lands on one of them.
struct ReportRunInputs {
    std::vector<RunPath> files;              // the audio inputs, named as in their messages
    const char* config_path = nullptr;       // --config, when given
    const char* defaults_cfg_path = nullptr; // --defaults-cfg, when given
};

// Plans the report's paths from the --out text and the input whose stem names it, with the
// --junit file when `junit_path` is not null, then refuses the run when they name one of `inputs`
// or each other. Prints the reason and returns false:
// "error: could not resolve output path from --out '%s'\n" or the refusal line.
bool plan_report_files(const char* out, const char* input_path, bool want_json,
                       const char* junit_path, ReportRunInputs inputs, OutputPaths& paths);

struct ReportFiles {
    OutputSet set;
    FileReplacement* html = nullptr;
    FileReplacement* json = nullptr;  // null unless a JSON path was planned
    FileReplacement* junit = nullptr; // null unless a JUnit path was planned
    std::string failed;               // after a false return: the folder or file that failed
};

// Makes the directory --out named and opens the files of `paths`. False with `failed` set and the
// complete error line in `message`: "error: could not create output directory '%s'\n" or
// "error: failed to write '%s'\n".
bool open_report_files(const OutputPaths& paths, ReportFiles& files, std::string& message);

// Puts the written files in place together. False with `failed` set and
// "error: failed to write '%s'\n" in `message`; then none of them was left behind.
bool commit_report_files(ReportFiles& files, std::string& message);
