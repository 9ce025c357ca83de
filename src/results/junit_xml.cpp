#include "results/junit_xml.h"

#include "results/json_writer.h"
#include "results/markup_escape.h"

namespace {

void attribute(std::string& out, std::string_view name, std::string_view value) {
    out += ' ';
    out += name;
    out += "=\"";
    append_xml_escaped(out, value);
    out += '"';
}

void count_attribute(std::string& out, std::string_view name, std::size_t value) {
    JsonNumberChars chars{};
    attribute(out, name, json_format_integer(static_cast<long>(value), chars));
}

void time_attribute(std::string& out, double seconds) {
    JsonNumberChars chars{};
    attribute(out, "time", json_format_fixed(seconds, 3, chars));
}

const char* outcome_tag(JunitOutcome outcome) {
    return outcome == JunitOutcome::failure ? "failure" : "error";
}

} // namespace

void junit_open(std::string& out, const JunitSuite& suite) {
    out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n  <testsuite";
    attribute(out, "name", suite.name);
    count_attribute(out, "tests", suite.tests);
    count_attribute(out, "failures", suite.failures);
    count_attribute(out, "errors", suite.errors);
    time_attribute(out, suite.seconds);
    out += ">\n";
}

void junit_case(std::string& out, const JunitCase& test) {
    out += "    <testcase";
    attribute(out, "classname", test.classname);
    attribute(out, "name", test.name);
    time_attribute(out, test.seconds);
    if (test.outcome == JunitOutcome::passed) {
        out += "/>\n";
        return;
    }
    out += ">\n      <";
    out += outcome_tag(test.outcome);
    attribute(out, "message", test.message);
    out += '>';
    append_xml_escaped(out, test.details);
    out += "</";
    out += outcome_tag(test.outcome);
    out += ">\n    </testcase>\n";
}

void junit_close(std::string& out) {
    out += "  </testsuite>\n</testsuites>\n";
}
