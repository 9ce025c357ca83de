#include "report/cards/ref_only_note.h"

bool append_ref_only_flag_note(TextBuffer& page, const char* flag) {
    return text_append_format(page,
                              "<p class=\"desc\">Reference only -- this run used <code>%s</code>, "
                              "so a failure here doesn't affect the overall verdict. Omit the flag "
                              "to restore strict gating (the built-in default).</p>\n",
                              flag);
}

bool append_skipped_note(TextBuffer& page, const char* flag) {
    return text_append_format(
        page, "<p class=\"desc\">Skipped -- run without <code>%s</code> to include it.</p>\n",
        flag);
}
