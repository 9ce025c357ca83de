// The skip and reference-only paragraphs of the cards whose check can be skipped or made
// reference-only.
#pragma once

#include "report/page/text_buffer.h"

// "Reference only -- this run used <code>%s</code>, ..." for level fidelity and artifact
// detection, naming the flag that makes them reference-only.
bool append_ref_only_flag_note(TextBuffer& page, const char* flag);

// "<p class=\"desc\">Skipped -- run without <code>%s</code> to include it.</p>\n".
bool append_skipped_note(TextBuffer& page, const char* flag);
