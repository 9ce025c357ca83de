// Audio files: reads 16/24/32-bit integer and 32/64-bit float PCM WAV files whole into a WavFile
// of normalised double samples (keeping every other chunk as raw bytes), and writes such samples
// back as WAV files with plain or extensible headers; and the two files lined up under a frame
// offset, whose overlap every comparison takes its range from; and the rounding and dB
// conversions every check shares; and the all-or-nothing file replacement through which every
// output is written. Also the strided view of one channel, and the hooks through which any layer
// reports exhausted memory and the progress of a long loop.
#pragma once

#include "audio/aligned_pair.h"
#include "audio/channel_view.h"
#include "audio/file_replacement.h"
#include "audio/numeric.h"
#include "audio/out_of_memory.h"
#include "audio/output_set.h"
#include "audio/overlap.h"
#include "audio/progress.h"
#include "audio/wav_file.h"
#include "audio/wav_reader.h"
#include "audio/wav_writer.h"
