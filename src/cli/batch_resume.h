// Whether a pair's earlier outputs can stand in a resumed batch: its page and its results JSON
// both exist and are newer than both of its inputs and every settings file of the run.
#pragma once

#include <span>
#include <string>

// `outputs` are the pair's page and JSON paths; `sources` its two inputs and the run's settings
// files. False when any output is missing or any source cannot be looked at.
bool outputs_newer_than(std::span<const std::string> outputs, std::span<const std::string> sources);
