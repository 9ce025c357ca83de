#include "support/junit_schema.h"

#include "support/run_process.h"
#include "support/temp_dir.h"

SchemaCheck validate_junit_file(const std::string& path) {
    const ProcessOutput output =
        run_process({"/usr/bin/xmllint", "--noout", "--schema", SONALYX_JUNIT_XSD, path});
    return {output.exit_status == 0, output.out + output.err};
}

SchemaCheck validate_junit_text(const std::string& xml) {
    const TempDir dir;
    const std::string path = dir.file("junit.xml");
    if (!write_text_file(path, xml)) return {false, "could not write " + path};
    return validate_junit_file(path);
}
