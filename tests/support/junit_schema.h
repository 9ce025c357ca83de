// Validates a JUnit file against tests/support/junit.xsd, the common JUnit format, with xmllint.
#pragma once

#include <string>

struct SchemaCheck {
    bool valid = false;
    std::string messages; // what xmllint said
};

SchemaCheck validate_junit_file(const std::string& path);
// Writes `xml` to a scratch file first.
SchemaCheck validate_junit_text(const std::string& xml);
